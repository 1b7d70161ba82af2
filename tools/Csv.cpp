#include "Csv.h"

namespace SentivoTool
{

std::string CsvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos && !text.empty())
        return text;
    std::string quoted = "\"";
    for (const char c : text)
    {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

CsvReader::CsvReader(const std::string& text) : m_Text(text)
{
    if (m_Text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        m_nPos = 3;
}

bool CsvReader::Next(std::vector<CsvValue>& record)
{
    record.clear();
    const size_t nSize = m_Text.size();
    // Blank lines between records.
    while (m_nPos < nSize && (m_Text[m_nPos] == '\n' || m_Text[m_nPos] == '\r'))
    {
        if (m_Text[m_nPos] == '\n')
            ++m_nLine;
        ++m_nPos;
    }
    if (m_nPos >= nSize)
        return false;
    m_nRecordLine = m_nLine;
    m_bTerminated = false;
    auto fail = [&](const std::string& what) { throw CsvError(m_nLine, what); };

    CsvValue value;
    while (true)
    {
        if (m_nPos < nSize && m_Text[m_nPos] == '"')
        {
            value.bQuoted = true;
            ++m_nPos;
            const size_t nQuoteLine = m_nLine;
            while (true)
            {
                if (m_nPos >= nSize)
                    throw CsvError(nQuoteLine, "a quoted field is not closed");
                const char c = m_Text[m_nPos++];
                if (c == '"')
                {
                    if (m_nPos < nSize && m_Text[m_nPos] == '"')
                    {
                        value.text += '"';
                        ++m_nPos;
                        continue;
                    }
                    break;
                }
                if (c == '\n')
                    ++m_nLine;
                value.text += c;
            }
            if (m_nPos < nSize && m_Text[m_nPos] != ',' && m_Text[m_nPos] != '\n' &&
                m_Text.compare(m_nPos, 2, "\r\n") != 0)
                fail("text behind a closing quote");
        }
        else
        {
            while (m_nPos < nSize && m_Text[m_nPos] != ',' && m_Text[m_nPos] != '\n' &&
                   m_Text.compare(m_nPos, 2, "\r\n") != 0)
            {
                if (m_Text[m_nPos] == '"')
                    fail("a quote inside a field that is not quoted");
                value.text += m_Text[m_nPos++];
            }
        }
        record.push_back(std::move(value));
        value = CsvValue();
        if (m_nPos >= nSize)
            return true;
        if (m_Text[m_nPos] == ',')
        {
            ++m_nPos;
            continue;
        }
        m_nPos += m_Text[m_nPos] == '\r' ? 2 : 1;
        ++m_nLine;
        m_bTerminated = true;
        return true;
    }
}

} // namespace SentivoTool
