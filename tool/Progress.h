#ifndef VORBEL_TOOL_PROGRESS_H
#define VORBEL_TOOL_PROGRESS_H

#include "Geometry.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

namespace vorbel::tool {

/// Counts rows and what failed, and shows how far the work is while somebody watches the error output.
class Progress {
public:
    /// \param[in] total  bytes of input or rows to make; 0: not known
    explicit Progress(std::uint64_t total);

    void count(RowStatus status) noexcept {
        ++m_counts[status];
    }

    /// Shows the progress if the error output is a terminal, a few times a second.
    void show(std::uint64_t done);

    /// Takes the progress off the terminal and says how many rows there were, and how many failed and why.
    void finish() const;

private:
    std::uint64_t rows() const noexcept;

    std::uint64_t m_total;
    bool m_watched;
    bool m_shown = false;
    std::array<std::uint64_t, kRowStatuses> m_counts{};
    std::chrono::steady_clock::time_point m_next;
};

/// Whether a stream is a terminal.
bool isTerminal(std::FILE* stream) noexcept;

}  // namespace vorbel::tool

#endif
