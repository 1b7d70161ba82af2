#include "Progress.h"

#include <string>

namespace SentivoTool
{

namespace
{

std::string Duration(double dSeconds)
{
    const long nSeconds = static_cast<long>(dSeconds + 0.5);
    char szText[32];
    if (nSeconds >= 3600)
        std::snprintf(szText, sizeof(szText), "%ld:%02ld:%02ld", nSeconds / 3600,
                      nSeconds / 60 % 60, nSeconds % 60);
    else
        std::snprintf(szText, sizeof(szText), "%ld:%02ld", nSeconds / 60, nSeconds % 60);
    return szText;
}

} // namespace

Progress::Progress(size_t nTotal, bool bShow, std::FILE* pOut)
    : m_nTotal(nTotal), m_bShow(bShow && nTotal > 0), m_pOut(pOut),
      m_Start(std::chrono::steady_clock::now()), m_LastDraw(m_Start)
{
    if (m_bShow)
        std::fprintf(m_pOut, "\r%s", Text(0, m_nTotal, 0.0).c_str());
}

std::string Progress::Text(size_t nDone, size_t nTotal, double dSeconds)
{
    constexpr size_t kWidth = 30;
    const size_t nFilled = nTotal == 0 ? kWidth : nDone * kWidth / nTotal;
    std::string text = "[" + std::string(nFilled, '#') + std::string(kWidth - nFilled, '.') + "] " +
                       std::to_string(nDone) + "/" + std::to_string(nTotal);
    if (nDone > 0 && dSeconds > 0.0)
    {
        const double dRate = static_cast<double>(nDone) / dSeconds;
        char szRate[32];
        std::snprintf(szRate, sizeof(szRate), "  %.1f/s  ", dRate);
        text += szRate + Duration(static_cast<double>(nTotal - nDone) / dRate) + " left";
    }
    return text;
}

void Progress::Update(size_t nDone)
{
    m_nDone = nDone;
    if (!m_bShow)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_LastDraw < std::chrono::milliseconds(100) && nDone < m_nTotal)
        return;
    m_LastDraw = now;
    const double dSeconds = std::chrono::duration<double>(now - m_Start).count();
    // Trailing blanks wipe what a longer earlier text left.
    std::fprintf(m_pOut, "\r%s    ", Text(nDone, m_nTotal, dSeconds).c_str());
    std::fflush(m_pOut);
}

void Progress::Finish()
{
    if (!m_bShow)
        return;
    m_LastDraw = std::chrono::steady_clock::time_point();
    Update(m_nDone);
    std::fputc('\n', m_pOut);
}

} // namespace SentivoTool
