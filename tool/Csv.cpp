#include "Csv.h"

#include "Text.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vorbel::tool {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;

/// Hands the fields of a line to `take`, quotes taken off; false if a quote is not closed.
template <class Take>
bool forEachField(std::string_view line, const Take& take) {
    std::size_t at = 0;
    for (;;) {
        std::size_t end = 0;
        std::size_t first = at;
        std::size_t last = 0;
        if (at < line.size() && line[at] == '"') {
            first = at + 1;
            last = line.find('"', first);
            while (last < line.size() && last + 1 < line.size() && line[last + 1] == '"') {
                last = line.find('"', last + 2);
            }
            if (last >= line.size() || (last + 1 < line.size() && line[last + 1] != ',')) {
                return false;
            }
            end = last + 1;
        } else {
            const void* const comma = std::memchr(line.data() + at, ',', line.size() - at);
            end = comma == nullptr ? line.size()
                                   : static_cast<std::size_t>(static_cast<const char*>(comma) - line.data());
            last = end;
        }
        take(line.substr(first, last - first));
        if (end == line.size()) {
            return true;
        }
        at = end + 1;
    }
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

}  // namespace

std::string_view CsvBlock::row(std::size_t i) const noexcept {
    const std::size_t begin = i == 0 ? 0 : ends[i - 1];
    return std::string_view(text).substr(begin, ends[i] - begin);
}

CsvReader::CsvReader(std::FILE* file, std::span<const CsvColumn> wanted, std::span<const std::string_view> added)
    : m_file(file), m_buffer(kBufferSize), m_hasColumn(wanted.size(), false) {
    std::string_view line;
    if (!nextLine(line)) {
        throw std::runtime_error("standard input is empty; it should begin with a row that names the columns");
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (line.starts_with(kByteOrderMark)) {
        line.remove_prefix(kByteOrderMark.size());
    }
    m_header = line;
    const bool closed = forEachField(m_header, [&](std::string_view field) {
        const std::string_view name = trimmed(field);
        if (std::find(added.begin(), added.end(), name) != added.end()) {
            throw std::runtime_error("the table has a column '" + std::string(name) +
                                     "' already, which this command adds; please rename it");
        }
        const auto column =
            std::find_if(wanted.begin(), wanted.end(), [&](const CsvColumn& c) { return c.name == name; });
        const auto number = column - wanted.begin();
        if (column != wanted.end()) {
            if (m_hasColumn[static_cast<std::size_t>(number)]) {
                throw std::runtime_error("the table has two columns '" + std::string(name) + "'");
            }
            m_hasColumn[static_cast<std::size_t>(number)] = true;
        }
        m_columnOfField.push_back(column == wanted.end() ? -1 : static_cast<int>(number));
    });
    if (!closed) {
        throw std::runtime_error("a quote in the row that names the columns is not closed");
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (wanted[i].required && !m_hasColumn[i]) {
            throw std::runtime_error("the table has no column '" + std::string(wanted[i].name) + "', only " +
                                     m_header.substr(0, 200));
        }
    }
}

bool CsvReader::nextLine(std::string_view& line) {
    std::size_t searched = m_begin;
    for (;;) {
        const void* const found = std::memchr(m_buffer.data() + searched, '\n', m_end - searched);
        std::size_t end = 0;
        if (found != nullptr) {
            end = static_cast<std::size_t>(static_cast<const char*>(found) - m_buffer.data());
        } else {
            std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin),
                      m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin());
            m_end -= m_begin;
            m_begin = 0;
            searched = m_end;
            if (m_end == m_buffer.size()) {
                throw std::runtime_error("line " + std::to_string(m_line + 1) + " of the table is longer than " +
                                         std::to_string(kBufferSize) + " bytes");
            }
            const std::size_t got = std::fread(m_buffer.data() + m_end, 1, m_buffer.size() - m_end, m_file);
            m_end += got;
            m_bytes += got;
            if (got > 0) {
                continue;
            }
            if (std::ferror(m_file) != 0) {
                throw std::runtime_error("standard input cannot be read after line " + std::to_string(m_line));
            }
            if (m_end == 0) {
                return false;
            }
            end = m_end;
        }
        line = std::string_view(m_buffer.data() + m_begin, end - m_begin);
        m_begin = std::min(end + 1, m_end);
        searched = m_begin;
        ++m_line;
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            return true;
        }
    }
}

void CsvReader::readRow(std::string_view line, CsvBlock& block) const {
    std::size_t field = 0;
    const bool closed = forEachField(line, [&](std::string_view value) {
        if (field < m_columnOfField.size() && m_columnOfField[field] >= 0) {
            block.columns[static_cast<std::size_t>(m_columnOfField[field])].push_back(parseNumber(value));
        }
        ++field;
    });
    if (!closed) {
        throw std::runtime_error("a quote in line " + std::to_string(m_line) +
                                 " of the table is not closed there, or not followed by a comma");
    }
    if (field != m_columnOfField.size()) {
        throw std::runtime_error("line " + std::to_string(m_line) + " of the table has " + std::to_string(field) +
                                 " fields, but " + std::to_string(m_columnOfField.size()) + " columns are named");
    }
    block.text += line;
    block.ends.push_back(block.text.size());
}

bool CsvReader::next(CsvBlock& block, std::size_t most) {
    block.text.clear();
    block.ends.clear();
    block.columns.resize(m_hasColumn.size());
    for (auto& column : block.columns) {
        column.clear();
    }
    std::string_view line;
    // a block of long rows ends early, so that its memory stays bounded
    while (block.rows() < most && block.text.size() < 16 * kBufferSize && nextLine(line)) {
        readRow(line, block);
    }
    return block.rows() > 0;
}

}  // namespace vorbel::tool
