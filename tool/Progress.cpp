#include "Progress.h"

#include <cstdio>
#include <numeric>
#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace vorbel::tool {

bool isTerminal(std::FILE* stream) noexcept {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

Progress::Progress(std::uint64_t total)
    : m_total(total), m_watched(isTerminal(stderr)), m_next(std::chrono::steady_clock::now()) {}

std::uint64_t Progress::rows() const noexcept {
    return std::accumulate(m_counts.begin(), m_counts.end(), std::uint64_t{0});
}

void Progress::show(std::uint64_t done) {
    const auto now = std::chrono::steady_clock::now();
    if (!m_watched || now < m_next) {
        return;
    }
    constexpr std::chrono::milliseconds kPause{250};
    m_next = now + kPause;
    m_shown = true;
    std::string bar;
    if (m_total > 0) {
        constexpr std::size_t kWidth = 40;
        const double share = static_cast<double>(done) / static_cast<double>(m_total);
        const auto full = static_cast<std::size_t>(share * kWidth);
        bar = " [" + std::string(full, '#') + std::string(full < kWidth ? kWidth - full : 0, '.') + "]";
    }
    std::fprintf(stderr, "\r%12llu rows%s", static_cast<unsigned long long>(rows()), bar.c_str());
}

void Progress::finish() const {
    if (m_shown) {
        std::fprintf(stderr, "\r%*s\r", 70, "");
    }
    std::uint64_t failed = 0;
    std::string reasons;
    for (std::size_t i = 0; i < m_counts.size(); ++i) {
        const auto status = static_cast<RowStatus>(i);
        if (m_counts[i] == 0 || status == static_cast<RowStatus>(scene::Status::ok)) {
            continue;
        }
        failed += hasNumbers(status) ? 0 : m_counts[i];
        reasons += (reasons.empty() ? ": " : ", ") + std::to_string(m_counts[i]) + " " + nameOf(status);
    }
    std::fprintf(stderr, "%llu rows, %llu without an answer%s\n", static_cast<unsigned long long>(rows()),
                 static_cast<unsigned long long>(failed), reasons.c_str());
}

}  // namespace vorbel::tool
