/* libkelcce9: bit-exact image colour-conversion primitives.

   Every image function reads caller-owned memory and writes caller-owned
   memory. A pixel image is a pointer to the first pixel of the region and a
   row step in bytes (signed; widened with its sign). Functions return a
   KelStatus: 0 success, above 0 a warning with the work done, below 0 an
   error with nothing written. */
#ifndef KELCC_H
#define KELCC_H

#include <stdint.h>

#if defined(__GNUC__)
#define KELCC_API __attribute__((visibility("default")))
#else
#define KELCC_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------ sample types */
typedef uint8_t Kel8u;
typedef int8_t Kel8s;
typedef uint16_t Kel16u;
typedef int16_t Kel16s;
typedef int32_t Kel32s;
typedef float Kel32f;

/* ------------------------------------------------------------ status codes */
typedef int32_t KelStatus;
enum {
  kelStatusOk = 0,
  kelStatusNothingDone = 1,
  kelStatusOddSizeTrimmed = 35,
  kelStatusBadArgument = -5,
  kelStatusBadSize = -6,
  kelStatusNullPointer = -8,
  kelStatusNoMemory = -9,
  kelStatusBadStep = -14,
  kelStatusBadContext = -17,
  kelStatusBadRange = -49,
  kelStatusBadLevels = -54,
  kelStatusBadNoise = -55
};

/* ------------------------------------------------------------ geometry */
typedef struct {
  int32_t width;
  int32_t height;
} KeliSize;

typedef struct {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
} KeliRect;

/* Colour pattern at the image origin of a Bayer sensor image. */
typedef enum {
  kelBayerBGGR = 0,
  kelBayerRGGB = 1,
  kelBayerGBRG = 2,
  kelBayerGRBG = 3
} KelBayerGrid;

typedef enum {
  kelDitherNone = 0,
  kelDitherFloydSteinberg = 1,
  kelDitherJarvisJudiceNinke = 2,
  kelDitherStucki = 3,
  kelDitherBayer = 4
} KelDitherType;

/* ------------------------------------------------------------ version */
typedef struct {
  int32_t major;
  int32_t minor;
  int32_t majorBuild;
  int32_t build;
  char targetCpu[4];
  const char* Name;
  const char* Version;
  const char* BuildDate;
} KelLibraryVersion;

/* A pointer to one constant record, the same on every call. */
KELCC_API const KelLibraryVersion* kelccGetLibVersion(void);

/* ============================================================ RGB <-> YUV, full resolution */
KELCC_API KelStatus keliRGBToYUV_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYUV_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYUV_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYUV_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYUV_8u_AC4P4R(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUVToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUVToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUVToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUVToRGB_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);

/* ============================================================ RGB <-> YCbCr at full resolution */
/* @section ycbcr444 */

/* ============================================================ RGB <-> subsampled YUV (4:2:2, 4:2:0; planar and packed) */
/* @section yuv-subsampled */

/* ============================================================ RGB and BGR <-> subsampled YCbCr / YCrCb */
/* @section ycbcr-subsampled */

/* ============================================================ Packed 16-bit sources (555, 565, 444) to YCbCr and YUV */
/* @section packed-sources */

/* ============================================================ YCbCr and YUV to 16-bit packed RGB, plain and dithered */
/* @section packed-outputs */

/* ============================================================ BT.709 conversions */
/* @section rec709 */

/* ============================================================ CbYCr 4:2:2 pixel conversions */
/* @section cbycr */

/* ============================================================ RGB565 pack and unpack */
/* @section rgb565 */
KELCC_API KelStatus keliBGR565ToBGR_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGB565ToRGB_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToBGR565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToRGB565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);

/* ============================================================ 4:2:2, 4:2:0 and 4:1:1 layout conversions */
/* @section layouts */

/* ============================================================ NV12, YV12, YUY2 and UYVY converters, deinterlacing */
/* @section nv12 */

/* ============================================================ Interlaced-field conversions */
/* @section interlace */

/* ============================================================ Filtered chroma upsampling */
/* @section filter */

/* ============================================================ 420, 411 and 1620 plane conversions */
/* @section planes1620 */

/* ============================================================ RGB <-> XYZ, RGB <-> YCC */
/* @section xyz-ycc */

/* ============================================================ RGB and BGR <-> HLS and HSV */
/* @section hls-hsv */

/* ============================================================ RGB <-> LUV */
/* @section luv */

/* ============================================================ BGR <-> Lab */
/* @section lab */

/* ============================================================ RGB to gray */
/* @section gray */

/* ============================================================ Gamma curves */
/* @section gamma */

/* ============================================================ Colour twist */
/* @section twist */

/* ============================================================ Tone mapping */
/* @section tonemap */

/* ============================================================ Bit-depth reduction */
/* @section reduce */

/* ============================================================ Demosaicing */
/* @section demosaic */

/* ============================================================ YCoCg lifting */
/* @section ycocg */

#ifdef __cplusplus
}
#endif
#endif /* KELCC_H */
