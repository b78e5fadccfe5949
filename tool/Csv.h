#ifndef VORBEL_TOOL_CSV_H
#define VORBEL_TOOL_CSV_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorbel::tool {

/// A column that a command reads.
struct CsvColumn {
    std::string_view name;
    bool required = true;
};

/// Some rows of a table.
struct CsvBlock {
    std::string text;                          ///< the rows as they came, one after the other, without their ends
    std::vector<std::size_t> ends;             ///< of each row in `text`
    std::vector<std::vector<double>> columns;  ///< those that are read; not-a-number where a field is no number

    std::size_t rows() const noexcept {
        return ends.size();
    }
    std::string_view row(std::size_t i) const noexcept;
};

/// Reads a table of comma-separated values in blocks, in memory that does not grow with it.
///
/// The first line that is not empty names the columns, in any order. Fields may be quoted, but not go over the end of
/// a line; a line may end with a carriage return; empty lines are left out.
class CsvReader {
public:
    /// \throws std::runtime_error  no header, a required column that it lacks, a column of `added` that it has
    CsvReader(std::FILE* file, std::span<const CsvColumn> wanted, std::span<const std::string_view> added);

    const std::string& header() const noexcept {
        return m_header;
    }

    /// Whether the table has the column, by its number among those wanted.
    bool has(std::size_t wanted) const noexcept {
        return m_hasColumn[wanted];
    }

    /// Bytes read so far.
    std::uint64_t bytes() const noexcept {
        return m_bytes;
    }

    /// Replaces `block` by the next rows, as many as `most`; false if there are none.
    /// \throws std::runtime_error  a row with more or fewer fields than the header, a quote that is not closed, a row
    ///                             of more than a megabyte, a file that cannot be read on
    bool next(CsvBlock& block, std::size_t most);

private:
    bool nextLine(std::string_view& line);
    void readRow(std::string_view line, CsvBlock& block) const;

    std::FILE* m_file;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0, m_end = 0;  // what of the buffer is not yet used
    std::uint64_t m_bytes = 0, m_line = 0;
    std::string m_header;
    std::vector<int> m_columnOfField;  // which of those wanted a field is, or -1
    std::vector<bool> m_hasColumn;
};

}  // namespace vorbel::tool

#endif
