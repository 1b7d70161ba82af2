#pragma once
// A small stopwatch on the monotonic high-resolution clock.
#include <chrono>

namespace Vlm
{

class CXStopWatch
{
public:
    CXStopWatch() : m_Start(std::chrono::steady_clock::now()) {}
    virtual ~CXStopWatch() = default;

    void Start() { m_Start = std::chrono::steady_clock::now(); }
    // Seconds since the last Start (or the construction).
    double Elapsed() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_Start).count();
    }

private:
    std::chrono::steady_clock::time_point m_Start;
};

} // namespace Vlm
