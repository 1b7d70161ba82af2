#include "sdk/ErrorTable.h"

#include "sentivo/sentivo_errors.h"

namespace Sentivo
{

// One row from the code's symbol and its sentence. Both wide columns are made
// from the very literals of the narrow ones (u"" "text" is u"text"), so the two
// widths cannot drift apart. The texts are plain ASCII, one code unit per
// character in either width.
#define SENTIVO_ERROR_ROW(code, text)                                                              \
    {                                                                                              \
        (code), text, u"" text, #code, u"" #code                                                   \
    }

// The rows are in neither code nor alphabetical order, and that order is kept.
// The table also holds the codes of codecs, matchers and cameras that this
// library never raises, so that each code keeps one meaning everywhere.
const ErrorTableRow g_ErrorTable[] = {
    SENTIVO_ERROR_ROW(ZRC_SUCCESS, "No errors occurred."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INITIALIZED, "Multiple initialization."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NOT_INITIALIZED, "Prior initialization is necessary."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NO_CB_ONEND,
                      "No callback function for the end of an operation is set."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NO_CB_ONERROR, "No callback function for errors is set."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_PTR, "The input image is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_COMPRESSION, "The compression FOCC is not supported."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_HEADERSIZE, "The header size of the Bitmap is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_PLANE,
                      "Only grey-scale images with 8-bit color-depth are supported."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_BITCOUNT, "BitCount has to be 8."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_PELS, "Pels are not in a valid range (see documentation)."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_DIMENSION, "The image is too small or too big."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_NO_FINGER, "No Finger found in the image."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BITMAP_UNEXPECTED_FILEHEADER,
                      "Fileheader found but expected bitmapinfoheader."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE_PTR, "The template is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE_SIZE, "The size of the finger template is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE_PTRPTR,
                      "The pointer to the template pointer is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE_PTR_NULL, "The template pointer is set to NULL."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE_SIZE_PTR, "Pointer to template-size is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE1_BAD, "The first template is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TEMPLATE2_BAD, "The second template is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INSUFFICIENT_MINUTIAE,
                      "Not enough minutiae were found in the image."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNSPECIFIED_WARNING, "An unspecified warning occurred."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ROTATIONS_RANGE, "The number of rotations is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_MATCHER_INIT, "The matcher could not be initialized."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_MATCHER_PARAMS, "The parameters of the matcher are not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_IN_CB_FUNCTION, "An error occurred in a callback function."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_FORMAT_NOTSUPPORTED, "The required format is not supported."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_FORMAT_IS_TOO_NEW, "The format is too new for this version."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_OUT_OF_RANGE, "One of the parameters is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_IS_MISSING, "One of the required parameter is missing."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_CURRUPT_BYTECODE, "The bytecode is corrupt."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_CURRUPT_DATA,
                      "The input is corrupt; it can be a memoryblock or a file."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNEXPECTED_SIGNATURE, "The input has an unexpected signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_DIFFERES_IN_VALUES, "A parameter has differing values."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NO_HANDLE, "The handle parameter is set to NULL."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INVALID_HANDLE,
                      "The handle parameter is not a valid handle for that function."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INVALID_OPTIONS_SETTING,
                      "The combination of options is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_VALUE_DUPLICATE,
                      "The given parameter is a duplicate of a previously given parameter."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_IS_READONLY, "The requested parameter is read only."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PARAM_IS_WRITEONLY, "The requested parameter is write only."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LOGGING, "An error occurred in the log function, maybe log full."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INVALID_STATE,
                      "The operation is not allowed in the current state."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_EMPTY_HANDLE, "The handle holds no data."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_DEVICE_DISCONNECTED, "The device has been disconnected."),
    SENTIVO_ERROR_ROW(E_INVALIDARG, "One or more arguments are not valid."),
    SENTIVO_ERROR_ROW(DISP_E_BADVARTYPE, "The variant type is not valid."),
    SENTIVO_ERROR_ROW(DISP_E_ARRAYISLOCKED, "The array is locked."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INTERNAL, "Internal error."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNSPECIFIED_INTERNAL, "An unspecified internal error occurred."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_OUT_OF_MEMORY,
                      "Memory allocation failed or given mem-block too small."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNSUPPORTED_FEATURE, "The requested feature is not supported."),
    SENTIVO_ERROR_ROW(ZRC_FATAL_ERROR_TERMINATION_NECESSARY,
                      "A fatal error occurred; the application has to be terminated."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_FROM_SYSTEM_FUNCTION,
                      "A error has occurred in a system function call. use the system "
                      "errorfunction to get more info."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_FILE_OPEN_FAIL, "Failed to open the specified file."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNEXPECTED_EOF, "Unexpected end of file."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WRITE_FAIL, "Failed to write to the file."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_READ_FAIL, "Failed to read from the file."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_IO, "Unspecified I/O error."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PATH_PTR_NULL, "The path pointer is set to NULL."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNKNOWN_PARAMETER, "A given parameter is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNKNOWN_CODEC, "The codec is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_VALUE_EXPECTED, "A value was expected but none was given."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_VALUE_WRONG, "The given value is wrong."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_INVALID_PARAMETER, "One(or more) parameter(s) is(are) invalid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BMP_NO_SIGNATURE, "The data has no BMP signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BMP_FAILURE, "An error occurred in the BMP codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_JPEG_NO_SIGNATURE, "The data has no JPEG signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_JPEG_FAILURE, "An error occurred in the JPEG codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_JPEG_WRONG_COLORSPACE,
                      "The color space is not supported by the JPEG codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_JPEG_QUALITY_OUTOFRANGE, "The JPEG quality is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_JPEG_SMOOTHING_OUTOFRANGE,
                      "The JPEG smoothing factor is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PNG_NO_SIGNATURE, "The data has no PNG signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_PNG_FAILURE, "An error occurred in the PNG codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_NO_SIGNATURE, "The data has no TIFF signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_FAILURE, "An error occurred in the TIFF codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_WRONG_COLORSPACE,
                      "The color space is not supported by the TIFF codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_QUALITY_OUTOFRANGE, "The TIFF quality is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_PREDICTOR_OUTOFRANGE, "The TIFF predictor is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_TIFF_COMPRESSMODE_UNKNOWN, "The TIFF compression mode is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_NO_CODEC, "The WSQ codec is not available."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_FAILURE, "An error occurred in the WSQ codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_WRONG_VERSION, "The WSQ version is not supported."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_GRAYSCALE_ONLY,
                      "The WSQ codec supports grey-scale images only."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_RATIO_OUTOFRANGE, "The WSQ compression ratio is out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_WSQ_CURRUPT_DATA, "The WSQ data is corrupt."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LURA_NO_CODEC, "The LURA codec is not available."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LURA_NO_SIGNATURE, "The data has no LURA signature."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LURA_FAILURE, "An error occurred in the LURA codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LURA_WRONG_COLORSPACE,
                      "The color space is not supported by the LURA codec."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_NOT_A_FINGER_BIT,
                      "The on-card matching data does not describe a finger."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_OWNER_MISSING,
                      "The format owner is missing in the on-card matching data."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_TYPE_MISSING,
                      "The format type is missing in the on-card matching data."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_OID_MISSING,
                      "The object identifier is missing in the on-card matching data."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_OID_UNKNOWN,
                      "The object identifier in the on-card matching data is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_FORMAT_IS_NOT_SUPPORTED,
                      "The on-card matching format is not supported."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ONCARDMATCHING_TAG_UNKNOWN,
                      "A tag in the on-card matching data is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_NO_COLORIMAGE,
                      "The blue-box processing needs a color image."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_TEMPLATE_OPEN_FAIL,
                      "Failed to open the blue-box template."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_SOURCE_IMAGE_EMPTY, "The blue-box source image is empty."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_DOCUMENT_IMAGE_EMPTY,
                      "The blue-box document image is empty."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_MASK_IMAGE_EMPTY, "The blue-box mask image is empty."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_ALPHA_IMAGE_EMPTY, "The blue-box alpha image is empty."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_IMAGE_DIMENSIONS_DIFFERENT,
                      "The blue-box images differ in their dimensions."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_INSERTION_COORDINATES_OUTOFRANGE,
                      "The blue-box insertion coordinates are out of range."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_TEMPLATE_MATCH_FAIL,
                      "The blue-box template could not be matched."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BLUEBOX_MASK_FAIL, "The blue-box mask could not be created."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_ERROR_INTERNAL,
                      "An internal error occurred in the camera interface."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_INVALID_PARAMETER,
                      "A parameter of the camera interface is not valid."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_MEM_FREE_FAILED, "The camera interface failed to free memory."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_MEM_ALLOC_FAILED,
                      "The camera interface failed to allocate memory."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_NOT_INITIALIZED, "The camera interface is not initialized."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_NOT_OPEN, "The camera is not open."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_OPEN, "The camera is already open."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_NOT_FOUND, "No camera was found."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_NOT_SUPPORTED, "The camera is not supported."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_VIEWFINDER_NOT_SUPPORTED,
                      "The viewfinder of the camera is not supported."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_VIEWFINDER_NOT_OPEN, "The viewfinder is not open."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_NOT_RELEASED, "The camera shutter was not released."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_CAMERA_RELEASE_CANCELLED,
                      "The release of the camera shutter was cancelled."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_UNSUPPORTED_DATA_FORMAT,
                      "The camera delivered an unsupported data format."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_NO_VAILID_IMAGE_IN_BUFFER,
                      "There is no valid image in the camera buffer."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_PROPERTY_NOT_SUPPORTED, "The camera property is not supported."),
    SENTIVO_ERROR_ROW(ZRC_CDSDK_INITIALIZED, "The camera interface is already initialized."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_COMMAND_UNKNOWN, "The imaging command is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_IMAGE_UNKNOWN,
                      "The image named in the imaging script is unknown."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_PARAMETERS,
                      "The parameters of the imaging command are not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_PROCESSING,
                      "An error occurred while processing the imaging command."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_READSCRIPT,
                      "The imaging script could not be read."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_ADVANCEDIMAGING_SCRIPTCONTENT,
                      "The content of the imaging script is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BAD_POINTER, "The pointer is bad or invalid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_SIZE_TOO_SMALL, "The given size is too small."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BAD_FINGER_NUMBER, "The finger number is not valid."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_BAD_CAST, "A type conversion failed."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LATENT_FINGERPOSITION_ALREADY_SET,
                      "The position of the latent finger is already set."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LATENT_FINGERPOSITION_NOT_FOUND,
                      "The position of the latent finger was not found."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NO_ENTRY_FOR_GIVEN_CELL, "There is no entry for the given cell."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_STD_EXCEPTION, "A standard exception occurred."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_UNKNOWN_EXCEPTION, "An unknown exception occurred."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_NO_LATENT_FINGER_GIVEN_FOR_LATENT_MATCHING,
                      "No latent finger was given for latent matching."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_CALIBRATE_FAILED_TO_GENERATE,
                      "The calibration failed to generate its data."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LD_FINGERPRINT_TOO_SMALL,
                      "The detected fingerprint region on the scanner surface is too small. "
                      "Press harder."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LD_NO_FINGERPRINT_IN_LOWER_AREA,
                      "Lower scanning region must be covered by the fingerprint. Move finger "
                      "down."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LD_FINGER_PLACED_SKEWLY,
                      "The fingerprint has to be placed straightly. Adjust finger placement."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LD_ILLUMINATION_TOO_HIGH,
                      "Overexposured images have been captured. Reduce ambient illumination."),
    SENTIVO_ERROR_ROW(ZRC_ERROR_LD_VIDEO_FRAME_INFO_ID_INVALID,
                      "The id of the video frame information is not valid."),
};

#undef SENTIVO_ERROR_ROW

const uint32_t g_nErrorTableSize = sizeof(g_ErrorTable) / sizeof(g_ErrorTable[0]);

const char* const g_szUnknownError = "Unknown error code.";
const char16_t* const g_wszUnknownError = u"Unknown error code.";

namespace
{

// First row with this code, or null. Linear, because the rows are unordered.
const ErrorTableRow* FindRow(int32_t nCode)
{
    for (uint32_t n = 0; n < g_nErrorTableSize; ++n)
    {
        if (g_ErrorTable[n].nCode == nCode)
            return &g_ErrorTable[n];
    }
    return nullptr;
}

} // namespace

const char* ErrorDescription(int32_t nCode)
{
    const ErrorTableRow* pRow = FindRow(nCode);
    return pRow != nullptr ? pRow->szDescription : g_szUnknownError;
}

const char16_t* ErrorDescriptionW(int32_t nCode)
{
    const ErrorTableRow* pRow = FindRow(nCode);
    return pRow != nullptr ? pRow->wszDescription : g_wszUnknownError;
}

} // namespace Sentivo
