#pragma once
// The progress bar of a batch on standard error: done and total, the rate
// and the time left, redrawn in place at most ten times a second.
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace SentivoTool
{

class Progress
{
public:
    // Draws only when bShow (the caller's test for a terminal and --quiet).
    Progress(size_t nTotal, bool bShow, std::FILE* pOut = stderr);
    void Update(size_t nDone);
    // The last state and a line break.
    void Finish();

    // The bar's text for a state, as Update draws it.
    static std::string Text(size_t nDone, size_t nTotal, double dSeconds);

private:
    size_t m_nTotal;
    bool m_bShow;
    std::FILE* m_pOut;
    std::chrono::steady_clock::time_point m_Start;
    std::chrono::steady_clock::time_point m_LastDraw;
    size_t m_nDone = 0;
};

} // namespace SentivoTool
