#pragma once
// Comma-separated text as the tool writes and reads it: a field holding a
// comma, a double quote or a line break is quoted, with its quotes doubled;
// an empty field that is not quoted stands for a missing value (null), ""
// for an empty text. Lines end in LF; CR LF is read as well.
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace SentivoTool
{

std::string CsvField(const std::string& text);

// A record that is not CSV: a quote out of place or not closed.
class CsvError : public std::runtime_error
{
public:
    CsvError(size_t nLine, const std::string& reason) : std::runtime_error(reason), m_nLine(nLine)
    {
    }
    size_t Line() const { return m_nLine; }

private:
    size_t m_nLine;
};

struct CsvValue
{
    std::string text;
    bool bQuoted = false;

    bool IsNull() const { return text.empty() && !bQuoted; }
};

// Reads records one after another from a whole text. Blank lines are
// skipped; a byte order mark at the start is passed over.
class CsvReader
{
public:
    explicit CsvReader(const std::string& text);

    // The next record; false at the end. Throws CsvError.
    bool Next(std::vector<CsvValue>& record);
    // The line the record read last starts on, from 1.
    size_t Line() const { return m_nRecordLine; }
    // The offset behind the record read last and its line break.
    size_t End() const { return m_nPos; }
    // Whether that record ended with a line break (a record cut off by an
    // interrupted write does not).
    bool Terminated() const { return m_bTerminated; }

private:
    const std::string& m_Text;
    size_t m_nPos = 0;
    size_t m_nLine = 1;
    size_t m_nRecordLine = 0;
    bool m_bTerminated = false;
};

} // namespace SentivoTool
