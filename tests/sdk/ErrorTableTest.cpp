#include <cstdint>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "sdk/ErrorTable.h"
#include "sentivo/sentivo_errors.h"

namespace
{

struct ExpectedRow
{
    int32_t nCode;
    const char* szName;
};

// Every code of the public header, in the order the table must keep.
// clang-format off
#define ROW(code) {code, #code}
const ExpectedRow kExpectedRows[] = {
    ROW(ZRC_SUCCESS), ROW(ZRC_ERROR_INITIALIZED), ROW(ZRC_ERROR_NOT_INITIALIZED),
    ROW(ZRC_ERROR_NO_CB_ONEND), ROW(ZRC_ERROR_NO_CB_ONERROR), ROW(ZRC_ERROR_BITMAP_PTR),
    ROW(ZRC_ERROR_BITMAP_COMPRESSION), ROW(ZRC_ERROR_BITMAP_HEADERSIZE),
    ROW(ZRC_ERROR_BITMAP_PLANE), ROW(ZRC_ERROR_BITMAP_BITCOUNT), ROW(ZRC_ERROR_BITMAP_PELS),
    ROW(ZRC_ERROR_BITMAP_DIMENSION), ROW(ZRC_ERROR_BITMAP_NO_FINGER),
    ROW(ZRC_ERROR_BITMAP_UNEXPECTED_FILEHEADER), ROW(ZRC_ERROR_TEMPLATE_PTR),
    ROW(ZRC_ERROR_TEMPLATE_SIZE), ROW(ZRC_ERROR_TEMPLATE_PTRPTR), ROW(ZRC_ERROR_TEMPLATE_PTR_NULL),
    ROW(ZRC_ERROR_TEMPLATE_SIZE_PTR), ROW(ZRC_ERROR_TEMPLATE1_BAD), ROW(ZRC_ERROR_TEMPLATE2_BAD),
    ROW(ZRC_ERROR_INSUFFICIENT_MINUTIAE), ROW(ZRC_ERROR_UNSPECIFIED_WARNING),
    ROW(ZRC_ERROR_ROTATIONS_RANGE), ROW(ZRC_ERROR_MATCHER_INIT), ROW(ZRC_ERROR_MATCHER_PARAMS),
    ROW(ZRC_ERROR_IN_CB_FUNCTION), ROW(ZRC_ERROR_FORMAT_NOTSUPPORTED),
    ROW(ZRC_ERROR_FORMAT_IS_TOO_NEW), ROW(ZRC_ERROR_PARAM_OUT_OF_RANGE),
    ROW(ZRC_ERROR_PARAM_IS_MISSING), ROW(ZRC_ERROR_CURRUPT_BYTECODE), ROW(ZRC_ERROR_CURRUPT_DATA),
    ROW(ZRC_ERROR_UNEXPECTED_SIGNATURE), ROW(ZRC_ERROR_PARAM_DIFFERES_IN_VALUES),
    ROW(ZRC_ERROR_NO_HANDLE), ROW(ZRC_ERROR_INVALID_HANDLE), ROW(ZRC_ERROR_INVALID_OPTIONS_SETTING),
    ROW(ZRC_ERROR_PARAM_VALUE_DUPLICATE), ROW(ZRC_ERROR_PARAM_IS_READONLY),
    ROW(ZRC_ERROR_PARAM_IS_WRITEONLY), ROW(ZRC_ERROR_LOGGING), ROW(ZRC_ERROR_INVALID_STATE),
    ROW(ZRC_ERROR_EMPTY_HANDLE), ROW(ZRC_ERROR_DEVICE_DISCONNECTED), ROW(E_INVALIDARG),
    ROW(DISP_E_BADVARTYPE), ROW(DISP_E_ARRAYISLOCKED), ROW(ZRC_ERROR_INTERNAL),
    ROW(ZRC_ERROR_UNSPECIFIED_INTERNAL), ROW(ZRC_ERROR_OUT_OF_MEMORY),
    ROW(ZRC_ERROR_UNSUPPORTED_FEATURE), ROW(ZRC_FATAL_ERROR_TERMINATION_NECESSARY),
    ROW(ZRC_ERROR_FROM_SYSTEM_FUNCTION), ROW(ZRC_ERROR_FILE_OPEN_FAIL),
    ROW(ZRC_ERROR_UNEXPECTED_EOF), ROW(ZRC_ERROR_WRITE_FAIL), ROW(ZRC_ERROR_READ_FAIL),
    ROW(ZRC_ERROR_IO), ROW(ZRC_ERROR_PATH_PTR_NULL), ROW(ZRC_ERROR_UNKNOWN_PARAMETER),
    ROW(ZRC_ERROR_UNKNOWN_CODEC), ROW(ZRC_ERROR_VALUE_EXPECTED), ROW(ZRC_ERROR_VALUE_WRONG),
    ROW(ZRC_ERROR_INVALID_PARAMETER), ROW(ZRC_ERROR_BMP_NO_SIGNATURE), ROW(ZRC_ERROR_BMP_FAILURE),
    ROW(ZRC_ERROR_JPEG_NO_SIGNATURE), ROW(ZRC_ERROR_JPEG_FAILURE),
    ROW(ZRC_ERROR_JPEG_WRONG_COLORSPACE), ROW(ZRC_ERROR_JPEG_QUALITY_OUTOFRANGE),
    ROW(ZRC_ERROR_JPEG_SMOOTHING_OUTOFRANGE), ROW(ZRC_ERROR_PNG_NO_SIGNATURE),
    ROW(ZRC_ERROR_PNG_FAILURE), ROW(ZRC_ERROR_TIFF_NO_SIGNATURE), ROW(ZRC_ERROR_TIFF_FAILURE),
    ROW(ZRC_ERROR_TIFF_WRONG_COLORSPACE), ROW(ZRC_ERROR_TIFF_QUALITY_OUTOFRANGE),
    ROW(ZRC_ERROR_TIFF_PREDICTOR_OUTOFRANGE), ROW(ZRC_ERROR_TIFF_COMPRESSMODE_UNKNOWN),
    ROW(ZRC_ERROR_WSQ_NO_CODEC), ROW(ZRC_ERROR_WSQ_FAILURE), ROW(ZRC_ERROR_WSQ_WRONG_VERSION),
    ROW(ZRC_ERROR_WSQ_GRAYSCALE_ONLY), ROW(ZRC_ERROR_WSQ_RATIO_OUTOFRANGE),
    ROW(ZRC_ERROR_WSQ_CURRUPT_DATA), ROW(ZRC_ERROR_LURA_NO_CODEC), ROW(ZRC_ERROR_LURA_NO_SIGNATURE),
    ROW(ZRC_ERROR_LURA_FAILURE), ROW(ZRC_ERROR_LURA_WRONG_COLORSPACE),
    ROW(ZRC_ERROR_ONCARDMATCHING_NOT_A_FINGER_BIT),
    ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_OWNER_MISSING),
    ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_TYPE_MISSING), ROW(ZRC_ERROR_ONCARDMATCHING_OID_MISSING),
    ROW(ZRC_ERROR_ONCARDMATCHING_OID_UNKNOWN),
    ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_IS_NOT_SUPPORTED),
    ROW(ZRC_ERROR_ONCARDMATCHING_TAG_UNKNOWN), ROW(ZRC_ERROR_BLUEBOX_NO_COLORIMAGE),
    ROW(ZRC_ERROR_BLUEBOX_TEMPLATE_OPEN_FAIL), ROW(ZRC_ERROR_BLUEBOX_SOURCE_IMAGE_EMPTY),
    ROW(ZRC_ERROR_BLUEBOX_DOCUMENT_IMAGE_EMPTY), ROW(ZRC_ERROR_BLUEBOX_MASK_IMAGE_EMPTY),
    ROW(ZRC_ERROR_BLUEBOX_ALPHA_IMAGE_EMPTY), ROW(ZRC_ERROR_BLUEBOX_IMAGE_DIMENSIONS_DIFFERENT),
    ROW(ZRC_ERROR_BLUEBOX_INSERTION_COORDINATES_OUTOFRANGE),
    ROW(ZRC_ERROR_BLUEBOX_TEMPLATE_MATCH_FAIL), ROW(ZRC_ERROR_BLUEBOX_MASK_FAIL),
    ROW(ZRC_CDSDK_ERROR_INTERNAL), ROW(ZRC_CDSDK_INVALID_PARAMETER), ROW(ZRC_CDSDK_MEM_FREE_FAILED),
    ROW(ZRC_CDSDK_MEM_ALLOC_FAILED), ROW(ZRC_CDSDK_NOT_INITIALIZED), ROW(ZRC_CDSDK_CAMERA_NOT_OPEN),
    ROW(ZRC_CDSDK_CAMERA_OPEN), ROW(ZRC_CDSDK_CAMERA_NOT_FOUND),
    ROW(ZRC_CDSDK_CAMERA_NOT_SUPPORTED), ROW(ZRC_CDSDK_VIEWFINDER_NOT_SUPPORTED),
    ROW(ZRC_CDSDK_VIEWFINDER_NOT_OPEN), ROW(ZRC_CDSDK_CAMERA_NOT_RELEASED),
    ROW(ZRC_CDSDK_CAMERA_RELEASE_CANCELLED), ROW(ZRC_CDSDK_UNSUPPORTED_DATA_FORMAT),
    ROW(ZRC_CDSDK_NO_VAILID_IMAGE_IN_BUFFER), ROW(ZRC_CDSDK_PROPERTY_NOT_SUPPORTED),
    ROW(ZRC_CDSDK_INITIALIZED), ROW(ZRC_ERROR_ADVANCEDIMAGING_COMMAND_UNKNOWN),
    ROW(ZRC_ERROR_ADVANCEDIMAGING_IMAGE_UNKNOWN), ROW(ZRC_ERROR_ADVANCEDIMAGING_PARAMETERS),
    ROW(ZRC_ERROR_ADVANCEDIMAGING_PROCESSING), ROW(ZRC_ERROR_ADVANCEDIMAGING_READSCRIPT),
    ROW(ZRC_ERROR_ADVANCEDIMAGING_SCRIPTCONTENT), ROW(ZRC_ERROR_BAD_POINTER),
    ROW(ZRC_ERROR_SIZE_TOO_SMALL), ROW(ZRC_ERROR_BAD_FINGER_NUMBER), ROW(ZRC_ERROR_BAD_CAST),
    ROW(ZRC_ERROR_LATENT_FINGERPOSITION_ALREADY_SET),
    ROW(ZRC_ERROR_LATENT_FINGERPOSITION_NOT_FOUND), ROW(ZRC_ERROR_NO_ENTRY_FOR_GIVEN_CELL),
    ROW(ZRC_ERROR_STD_EXCEPTION), ROW(ZRC_ERROR_UNKNOWN_EXCEPTION),
    ROW(ZRC_ERROR_NO_LATENT_FINGER_GIVEN_FOR_LATENT_MATCHING),
    ROW(ZRC_ERROR_CALIBRATE_FAILED_TO_GENERATE), ROW(ZRC_ERROR_LD_FINGERPRINT_TOO_SMALL),
    ROW(ZRC_ERROR_LD_NO_FINGERPRINT_IN_LOWER_AREA), ROW(ZRC_ERROR_LD_FINGER_PLACED_SKEWLY),
    ROW(ZRC_ERROR_LD_ILLUMINATION_TOO_HIGH), ROW(ZRC_ERROR_LD_VIDEO_FRAME_INFO_ID_INVALID)
};
#undef ROW
// clang-format on

std::u16string Widen(const char* szText)
{
    std::u16string wsText;
    for (const char* p = szText; *p != '\0'; ++p)
        wsText.push_back(static_cast<char16_t>(static_cast<unsigned char>(*p)));
    return wsText;
}

} // namespace

TEST(ErrorTable, HoldsEveryPublicCodeOnceInTheHeadersOrder)
{
    const size_t nExpected = sizeof(kExpectedRows) / sizeof(kExpectedRows[0]);
    ASSERT_EQ(nExpected, 146u);
    ASSERT_EQ(Sentivo::g_nErrorTableSize, nExpected);

    std::set<int32_t> codes;
    for (size_t n = 0; n < nExpected; ++n)
    {
        const Sentivo::ErrorTableRow& row = Sentivo::g_ErrorTable[n];
        EXPECT_EQ(row.nCode, kExpectedRows[n].nCode) << "row " << n;
        ASSERT_NE(row.szName, nullptr) << "row " << n;
        EXPECT_STREQ(row.szName, kExpectedRows[n].szName) << "row " << n;
        EXPECT_TRUE(codes.insert(row.nCode).second) << "code " << row.nCode << " twice";
    }
}

TEST(ErrorTable, WideColumnsEqualTheNarrowOnesUnitForUnit)
{
    for (uint32_t n = 0; n < Sentivo::g_nErrorTableSize; ++n)
    {
        const Sentivo::ErrorTableRow& row = Sentivo::g_ErrorTable[n];
        ASSERT_NE(row.szDescription, nullptr) << "row " << n;
        ASSERT_NE(row.wszDescription, nullptr) << "row " << n;
        ASSERT_NE(row.wszName, nullptr) << "row " << n;
        // Every row is a sentence of its own, not an empty placeholder.
        const std::string sDescription = row.szDescription;
        ASSERT_GT(sDescription.size(), 1u) << row.szName;
        EXPECT_EQ(sDescription.back(), '.') << row.szName;
        EXPECT_EQ(std::u16string(row.wszDescription), Widen(row.szDescription)) << row.szName;
        EXPECT_EQ(std::u16string(row.wszName), Widen(row.szName)) << row.szName;
        // Only the code's own row answers for it, in both widths.
        EXPECT_EQ(Sentivo::ErrorDescription(row.nCode), row.szDescription) << row.szName;
        EXPECT_EQ(Sentivo::ErrorDescriptionW(row.nCode), row.wszDescription) << row.szName;
    }
}

TEST(ErrorTable, DescribesTheCodesThisLibraryRaisesInTheirFixedWording)
{
    const struct
    {
        int32_t nCode;
        const char* szText;
    } kTexts[] = {
        {0, "No errors occurred."},
        {-2, "Prior initialization is necessary."},
        {-10, "The input image is not valid."},
        {-21, "The size of the finger template is not valid."},
        {-42, "The handle parameter is set to NULL."},
        {-43, "The handle parameter is not a valid handle for that function."},
        {-44, "One(or more) parameter(s) is(are) invalid."},
        {-49, "An error occurred in the log function, maybe log full."},
        {-101, "Internal error."},
        {-105, "A error has occurred in a system function call. use the system errorfunction to "
               "get more info."},
        {-206, "A given parameter is unknown."},
        {-701, "The pointer is bad or invalid."},
        {-768, "The detected fingerprint region on the scanner surface is too small. Press "
               "harder."},
        {-769, "Lower scanning region must be covered by the fingerprint. Move finger down."},
        {-770, "The fingerprint has to be placed straightly. Adjust finger placement."},
        {-799, "Overexposured images have been captured. Reduce ambient illumination."},
    };
    for (const auto& expected : kTexts)
    {
        EXPECT_STREQ(Sentivo::ErrorDescription(expected.nCode), expected.szText) << expected.nCode;
        EXPECT_EQ(std::u16string(Sentivo::ErrorDescriptionW(expected.nCode)),
                  Widen(expected.szText))
            << expected.nCode;
    }
}

TEST(ErrorTable, CodesWithoutARowGiveTheUnknownText)
{
    EXPECT_STREQ(Sentivo::g_szUnknownError, "Unknown error code.");
    EXPECT_EQ(std::u16string(Sentivo::g_wszUnknownError), u"Unknown error code.");
    // -6 is raised by the filter operators yet deliberately has no row.
    for (int32_t nCode : {-6, 1, 12345, INT32_MIN, INT32_MAX})
    {
        EXPECT_EQ(Sentivo::ErrorDescription(nCode), Sentivo::g_szUnknownError) << nCode;
        EXPECT_EQ(Sentivo::ErrorDescriptionW(nCode), Sentivo::g_wszUnknownError) << nCode;
    }
}

TEST(ErrorTable, PlatformResultCodesKeepThePlatformsValues)
{
    EXPECT_EQ(E_INVALIDARG, static_cast<int32_t>(0x80070057u));
    EXPECT_EQ(DISP_E_BADVARTYPE, static_cast<int32_t>(0x80020008u));
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, static_cast<int32_t>(0x8002000Du));
    for (uint32_t nValue : {0x80070057u, 0x80020008u, 0x8002000Du})
    {
        const int32_t nCode = static_cast<int32_t>(nValue);
        EXPECT_STRNE(Sentivo::ErrorDescription(nCode), Sentivo::g_szUnknownError) << nValue;
        EXPECT_NE(std::u16string(Sentivo::ErrorDescriptionW(nCode)),
                  std::u16string(Sentivo::g_wszUnknownError))
            << nValue;
    }
}
