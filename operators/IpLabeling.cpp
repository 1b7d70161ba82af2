#include "operators/IpLabeling.h"

#include <cstring>

#include "sdk/Exception.h"

namespace
{

// The first column from x on whose sample is not zero, or nWidth; eight
// samples a step while they are all zero.
int32_t EndOfZeros(const uint8_t* pRow, int32_t x, int32_t nWidth)
{
    for (; x + 8 <= nWidth; x += 8)
    {
        uint64_t nEight;
        std::memcpy(&nEight, pRow + x, sizeof(nEight));
        if (nEight != 0)
            break;
    }
    while (x < nWidth && pRow[x] == 0)
        ++x;
    return x;
}

} // namespace

int32_t ClIpLabeling::Run(ClImage* pIn, ClImage* pOut)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    return Run();
}

ClProcessorBase* ClIpLabeling::NewInstance() const
{
    return NewProcessor<ClIpLabeling>();
}

int32_t ClIpLabeling::Process()
{
    if (m_pInImage == nullptr)
        SENTIVO_THROW("Inputimage is missing", ZRC_ERROR_PARAM_IS_MISSING);
    if (m_pOutImage == nullptr)
        SENTIVO_THROW("Outputimage is missing", ZRC_ERROR_PARAM_IS_MISSING);

    // The samples are read through a copy that shares the input's buffer, so
    // that an output which is the input (or shares its buffer) gets a buffer
    // of its own and the samples stay readable.
    const ClImage input = *m_pInImage;
    ClImage& labels = *m_pOutImage;
    labels.Create(ClImage::eInt32, input.Width(), input.Height(), input.Planes(),
                  input.XResolution(), input.YResolution());
    labels.SetContent(input.Content());
    labels.SetBounds(input.LowerBound(), input.UpperBound());
    labels.Fill<int32_t>(0);

    // A fill labels whole runs of zero samples of a row, so a run is either
    // labelled throughout or not at all: its first sample tells which, and
    // the scan steps from run to run.
    m_nRegionCount = 0;
    const int32_t nWidth = input.Width();
    for (int32_t y = 0; y < input.Height(); ++y)
    {
        const uint8_t* pIn = input.Row<uint8_t>(y);
        const int32_t* pLabel = labels.Row<int32_t>(y);
        int32_t x = 0;
        while (x < nWidth)
        {
            const void* pZero = std::memchr(pIn + x, 0, static_cast<size_t>(nWidth - x));
            if (pZero == nullptr)
                break;
            x = static_cast<int32_t>(static_cast<const uint8_t*>(pZero) - pIn);
            if (pLabel[x] == 0)
                Fill(input, labels, x, y, ++m_nRegionCount);
            x = EndOfZeros(pIn, x, nWidth);
        }
    }
    return 0;
}

void ClIpLabeling::Fill(const ClImage& input, ClImage& labels, int32_t x, int32_t y, int32_t nLabel)
{
    const int32_t nWidth = input.Width(), nHeight = input.Height();
    m_LineParts.Clear();
    m_LineParts.Add(StPos{x, y});
    while (m_LineParts.Size() > 0)
    {
        const StPos seed = m_LineParts[m_LineParts.Size() - 1];
        m_LineParts.RemoveAt(m_LineParts.Size() - 1);

        const uint8_t* pIn = input.Row<uint8_t>(seed.y);
        int32_t* pLabel = labels.Row<int32_t>(seed.y);
        const bool bBelow = seed.y + 1 < nHeight, bAbove = seed.y > 0;
        const uint8_t* pInBelow = bBelow ? input.Row<uint8_t>(seed.y + 1) : nullptr;
        const int32_t* pLabelBelow = bBelow ? labels.Row<int32_t>(seed.y + 1) : nullptr;
        const uint8_t* pInAbove = bAbove ? input.Row<uint8_t>(seed.y - 1) : nullptr;
        const int32_t* pLabelAbove = bAbove ? labels.Row<int32_t>(seed.y - 1) : nullptr;

        int32_t nStart = seed.x;
        while (nStart > 0 && pIn[nStart - 1] == 0)
            --nStart;

        // One seed per run of unlabeled zero samples in the rows beside.
        bool bWasBelow = false, bWasAbove = false;
        for (int32_t i = nStart; i < nWidth && pIn[i] == 0; ++i)
        {
            if (bBelow)
            {
                const bool f = pInBelow[i] == 0 && pLabelBelow[i] == 0;
                if (f && !bWasBelow)
                    m_LineParts.Add(StPos{i, seed.y + 1});
                bWasBelow = f;
            }
            if (bAbove)
            {
                const bool f = pInAbove[i] == 0 && pLabelAbove[i] == 0;
                if (f && !bWasAbove)
                    m_LineParts.Add(StPos{i, seed.y - 1});
                bWasAbove = f;
            }
            pLabel[i] = nLabel;
        }
    }
}
