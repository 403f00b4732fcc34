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
KELCC_API KelStatus keliRGBToYCbCr_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
/* The fourth byte of each pixel is set to the low 8 bits of alpha. */
KELCC_API KelStatus keliYCbCrToRGB_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                            int alpha);
KELCC_API KelStatus keliYCbCrToBGR_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                            int alpha);

/* ============================================================ RGB <-> subsampled YUV (4:2:2, 4:2:0; planar and packed) */
/* @section yuv-subsampled */
/* 4:2:2 members return kelStatusOk for every size that passes the checks;
   4:2:0 members return kelStatusOddSizeTrimmed when the width or the height
   is odd (the last odd column and row are then neither read nor written).
   The forms without R work on tight images. */
KELCC_API KelStatus keliRGBToYUV422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYUV422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYUV422_8u_C3P3(const Kel8u* src, Kel8u* dst[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYUV422_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi);
KELCC_API KelStatus keliRGBToYUV422_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYUV420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYUV420_8u_C3P3(const Kel8u* src, Kel8u* dst[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYUV420_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi);
KELCC_API KelStatus keliRGBToYUV420_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYUV420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYUV422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV422ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                             KeliSize roi);
KELCC_API KelStatus keliYUV422ToRGB_8u_P3C3(const Kel8u* const src[3], Kel8u* dst, KeliSize roi);
KELCC_API KelStatus keliYUV422ToRGB_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], int dstStep,
                                           KeliSize roi);
KELCC_API KelStatus keliYUV422ToRGB_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi);
/* The fourth byte of every written pixel is set to 0. */
KELCC_API KelStatus keliYUV422ToRGB_8u_P3AC4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                              KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                             KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB_8u_P3C3(const Kel8u* const src[3], Kel8u* dst, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], int dstStep,
                                           KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi);
/* The fourth byte of every written pixel is set to 0. */
KELCC_API KelStatus keliYUV420ToRGB_8u_P3AC4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                              KeliSize roi);
/* Minimum size 2 by 2. */
KELCC_API KelStatus keliYUV420ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                             KeliSize roi);

/* ============================================================ RGB and BGR <-> subsampled YCbCr / YCrCb */
/* @section ycbcr-subsampled */
/* Studio-range YCbCr with 4:2:2, 4:2:0 or 4:1:1 chroma. YCrCb planes lie
   Y, Cr, Cb; packed 4:2:2 rows are Y0 Cb Y1 Cr (YCbCr) or Y0 Cr Y1 Cb
   (YCrCb). `alpha`: only its low 8 bits are used. */
KELCC_API KelStatus keliRGBToYCbCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr422_8u_P3C2R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCrCb422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCrCb422_8u_P3C2R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr422_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr422_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCbCr420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCrCb420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCrCb420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliRGBToYCrCb420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr411_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr411_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb422ToRGB_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha);
KELCC_API KelStatus keliYCbCr422ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi, int alpha);
KELCC_API KelStatus keliYCrCb420ToRGB_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi, int alpha);
KELCC_API KelStatus keliYCbCr411ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToBGR_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi, int alpha);

/* ============================================================ Packed 16-bit sources (555, 565, 444) to YCbCr and YUV */
/* @section packed-sources */
KELCC_API KelStatus keliBGR555ToYCbCr411_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR555ToYCbCr420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR555ToYCrCb420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR555ToYCbCr422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR555ToYCbCr422_16u8u_C3C2R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGR555ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR565ToYCbCr411_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR565ToYCbCr420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR565ToYCrCb420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR565ToYCbCr422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGR565ToYCbCr422_16u8u_C3C2R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGR565ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliRGB565ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliRGB565ToYUV422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);

/* ============================================================ YCbCr and YUV to 16-bit packed RGB, plain and dithered */
/* @section packed-outputs */
/* BGR formats hold red in the high bits, RGB formats red in the low bits; 444 and 555 leave the top
   bits 0. dstStep is in bytes; all but the 411 members use dstStep >> 1 words per row. */
KELCC_API KelStatus keliYCbCrToBGR444_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR555_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB444_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB555_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR444Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR555Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR565Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB444Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB555Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB565Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR444_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR555_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR565_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB444_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB555_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB565_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR444_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR555_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR565_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB444_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB555_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB565_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR444Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR555Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR565Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB444Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB555Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB565Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYUV420ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi);

/* ============================================================ BT.709 conversions */
/* @section rec709 */
/* BT.709 weights, BGR order. 709CSC: studio swing; 709HDTV: full swing, the
   forward direction limits every output to 1..254. C4 destinations: the
   fourth byte of each pixel is set to the low 8 bits of alpha. */
KELCC_API KelStatus keliBGRToYCbCr420_709CSC_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr420_709CSC_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCrCb420_709CSC_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCrCb420_709CSC_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliBGRToYCbCr420_709HDTV_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR_709CSC_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToBGR_709HDTV_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi,
                                                       int alpha);
KELCC_API KelStatus keliYCbCrToBGR_709CSC_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCrToBGR_709CSC_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                                   int alpha);
KELCC_API KelStatus keliBGRToCbYCr422_709HDTV_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToCbYCr422_709HDTV_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToBGR_709HDTV_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToBGR_709HDTV_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                                       int alpha);

/* ============================================================ CbYCr 4:2:2 pixel conversions */
/* @section cbycr */
/* Packed CbYCr 4:2:2: bytes Cb, Y0, Cr, Y1 per pixel pair; an odd last
   pixel is converted (Cb and Y only on the packed side). The Gamma member
   passes each colour sample through the forward gamma curve first and
   rejects steps below 1. */
KELCC_API KelStatus keliRGBToCbYCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToCbYCr422Gamma_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToCbYCr422_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
/* The fourth byte of each pixel is set to the low 8 bits of alpha. */
KELCC_API KelStatus keliCbYCr422ToBGR_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha);

/* ============================================================ RGB565 pack and unpack */
/* @section rgb565 */
KELCC_API KelStatus keliBGR565ToBGR_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGB565ToRGB_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToBGR565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToRGB565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);

/* ============================================================ 4:2:2, 4:2:0 and 4:1:1 layout conversions */
/* @section layouts */
KELCC_API KelStatus keliCbYCr422ToYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCrCb422ToYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCrCb422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCrCb422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCrCb422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCrCb422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr411_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr411_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToYCbCr422_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCrCb420ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCrCb422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr422_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCrCb422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCrCb420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToYCbCr411_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb420ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);

/* ============================================================ NV12, YV12, YUY2 and UYVY converters, deinterlacing */
/* @section nv12 */
/* NV12 is YCbCr420 P2 (chroma pairs Cb, Cr), YV12 is YCrCb420 P3 (planes Y, Cr, Cb),
   YUY2 is YCbCr422 C2 and UYVY is CbYCr422 C2. Width and height are trimmed to even values. */
KELCC_API KelStatus keliYCbCr420ToYCbCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToCbYCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst, int dstStep, KeliSize roi);
/* dst[1] receives the first byte of each chroma pair, dst[2] the second. */
KELCC_API KelStatus keliYCbCr420ToYCrCb420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCbCr420_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCbCr420_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToYCrCb420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCrCb420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr422ToCbYCr422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCbCr422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb420ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb420ToYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCrCb420ToCbYCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);
/* Deinterlacing of an NV12 picture that holds two fields, whole or by slices from the top down. */
enum { kelSliceFirst = 1, kelSliceMiddle = 4, kelSliceLast = 16, kelSliceWhole = 21 };
KELCC_API KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst, int dstStep, KeliSize roi, uint32_t sliceFlags);
KELCC_API KelStatus keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi, uint32_t sliceFlags);

/* ============================================================ Interlaced-field conversions */
/* @section interlace */
/* 4:2:2 <-> 4:2:0 with vertical chroma filters that keep the two fields of an interlaced picture apart.
   Width trimmed to even, height to a multiple of 4 (minimum 2 by 4); kelStatusOddSizeTrimmed when trimmed.
   Planes Y, Cb, Cr; C2 rows hold Cb Y0 Cr Y1. */
KELCC_API KelStatus keliYCbCr422To420_Interlace_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420To422_Interlace_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi);

/* ============================================================ Filtered chroma upsampling */
/* @section filter */
/* 4:2:0 -> 4:2:2 planes with a four-tap vertical chroma filter (-1 9 9 -1) / 16; width trimmed to even,
   height to a multiple of 8 (minimum 2 by 8). */
KELCC_API KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
/* Source planes Y, Cr, Cb; destination planes Y, Cb, Cr. */
KELCC_API KelStatus keliYCrCb420ToYCbCr422_Filter_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi);
/* Planes Y, Cr, Cb (4:2:0) to B, G, R, alpha pixels, chroma interpolated across. An odd last column or row
   is left unwritten (width 1 writes nothing) with kelStatusOddSizeTrimmed. */
KELCC_API KelStatus keliYCrCb420ToBGR_Filter_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi, int alpha);

/* ============================================================ 420, 411 and 1620 plane conversions */
/* @section planes1620 */
/* Chroma grids 420 (2 x 2), 411 (4 x 1) and 1620 (4 x 4 luma pixels per chroma sample), planes Y, Cb, Cr.
   Width a multiple of 4; height even (420 -> 411) or a multiple of 4 (the others); else kelStatusBadSize.
   Chroma steps are taken as unsigned numbers. */
KELCC_API KelStatus keliYCbCr420To411_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr411To420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr420To1620_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);
KELCC_API KelStatus keliYCbCr1620To420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi);

/* ============================================================ RGB <-> XYZ, RGB <-> YCC */
/* @section xyz-ycc */
KELCC_API KelStatus keliRGBToXYZ_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToXYZ_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliXYZToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToYCC_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCCToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);

/* ============================================================ RGB and BGR <-> HLS and HSV */
/* @section hls-hsv */
KELCC_API KelStatus keliRGBToHLS_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHLS_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHSV_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHSV_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHSV_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToHSV_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHSVToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHSVToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHSVToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHSVToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_AC4P4R(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_AP4C4R(const Kel8u* const src[4], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToHLS_8u_AP4R(const Kel8u* const src[4], int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_AC4P4R(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_AP4C4R(const Kel8u* const src[4], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliHLSToBGR_8u_AP4R(const Kel8u* const src[4], int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi);

/* ============================================================ RGB <-> LUV */
/* @section luv */
KELCC_API KelStatus keliRGBToLUV_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToLUV_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLUVToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);

/* ============================================================ BGR <-> Lab */
/* @section lab */
KELCC_API KelStatus keliBGRToLab_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToLab_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLabToBGR_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliLabToBGR_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);

/* ============================================================ RGB to gray */
/* @section gray */
KELCC_API KelStatus keliRGBToGray_8u_C3C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_8u_AC4C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_16u_C3C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_16u_AC4C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_16s_C3C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_16s_AC4C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_32f_C3C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliRGBToGray_32f_AC4C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi);
/* coeffs: weights of channels 0, 1, 2; null selects those of RGBToGray. */
KELCC_API KelStatus keliColorToGray_8u_C3C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_8u_AC4C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_16u_C3C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_16u_AC4C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_16s_C3C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_16s_AC4C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_32f_C3C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);
KELCC_API KelStatus keliColorToGray_32f_AC4C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                                const Kel32f coeffs[3]);

/* ============================================================ Gamma curves */
/* @section gamma */
/* The gamma curve (linear foot, power 0.45 above; Fwd) and its inverse (Inv).
   Steps are bytes, at least 1. 8u maps through constant tables; 16u computes
   in double precision, through a per-call table of 65536 entries above 65536
   samples (kelStatusNoMemory if it cannot be allocated); 32f maps the range
   vMin..vMax (empty or reversed: kelStatusBadRange, checked first) and does
   not clamp. AC4 forms leave the fourth sample as it was; P3 planes share
   one step. */
KELCC_API KelStatus keliGammaFwd_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_8u_C3IR(Kel8u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_8u_AC4IR(Kel8u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_8u_IP3R(Kel8u* srcDst[3], int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_C3IR(Kel8u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_AC4IR(Kel8u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_8u_IP3R(Kel8u* srcDst[3], int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_C3IR(Kel16u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_AC4IR(Kel16u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_P3R(const Kel16u* const src[3], int srcStep, Kel16u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_16u_IP3R(Kel16u* srcDst[3], int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_C3IR(Kel16u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_AC4IR(Kel16u* srcDst, int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_P3R(const Kel16u* const src[3], int srcStep, Kel16u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliGammaInv_16u_IP3R(Kel16u* srcDst[3], int srcDstStep, KeliSize roi);
KELCC_API KelStatus keliGammaFwd_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaFwd_32f_C3IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaFwd_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaFwd_32f_AC4IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaFwd_32f_P3R(const Kel32f* const src[3], int srcStep, Kel32f* dst[3], int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaFwd_32f_IP3R(Kel32f* srcDst[3], int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_C3IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_AC4IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_P3R(const Kel32f* const src[3], int srcStep, Kel32f* dst[3], int dstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);
KELCC_API KelStatus keliGammaInv_32f_IP3R(Kel32f* srcDst[3], int srcDstStep, KeliSize roi, Kel32f vMin, Kel32f vMax);

/* ============================================================ Colour twist */
/* @section twist */
/* twist: rows for the output channels 0, 1, 2, each (weight of channel 0, 1, 2, additive constant);
   integer forms compute in single precision under round-to-nearest and leave MXCSR as they found it. */
KELCC_API KelStatus keliColorTwist32f_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8u_C3IR(Kel8u* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                            const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8u_AC4IR(Kel8u* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8u_IP3R(Kel8u* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_C3R(const Kel8s* src, int srcStep, Kel8s* dst, int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_C3IR(Kel8s* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_AC4R(const Kel8s* src, int srcStep, Kel8s* dst, int dstStep, KeliSize roi,
                                            const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_AC4IR(Kel8s* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_P3R(const Kel8s* const src[3], int srcStep, Kel8s* dst[3], int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_8s_IP3R(Kel8s* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_C3IR(Kel16u* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                            const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_AC4IR(Kel16u* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_P3R(const Kel16u* const src[3], int srcStep, Kel16u* dst[3], int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16u_IP3R(Kel16u* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_C3IR(Kel16s* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                            const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_AC4IR(Kel16s* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_P3R(const Kel16s* const src[3], int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi,
                                           const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist32f_16s_IP3R(Kel16s* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                        const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_C3IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                         const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_AC4IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_P3R(const Kel32f* const src[3], int srcStep, Kel32f* dst[3], int dstStep, KeliSize roi,
                                        const Kel32f twist[3][4]);
KELCC_API KelStatus keliColorTwist_32f_IP3R(Kel32f* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]);
/* 4 x 4: rows for the output channels 0..3, each the weights of the input channels 0..3 (no constant). */
KELCC_API KelStatus keliColorTwist_32f_C4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                        const Kel32f twist[4][4]);

/* ============================================================ Tone mapping */
/* @section tonemap */
/* One scale for a float image of any range into 8 bits: Linear maps the
   maximum to 255 (the low 8 bits of the truncated product are stored), Mean
   maps twice the mean to 255 (limited to 0..255). A negative statistic gives
   kelStatusNothingDone with the destination untouched; one near zero a black
   image. */
KELCC_API KelStatus keliToneMapLinear_32f8u_C1R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliToneMapMean_32f8u_C1R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);

/* ============================================================ Bit-depth reduction */
/* @section reduce */
/* Quantising to `levels` output levels (2 to 256; 65536 for 16u and 16s),
   with an optional dither: kelDitherNone, Floyd-Steinberg, Jarvis-Judice-Ninke,
   Stucki or 4x4 ordered; `noise` (0 to 100 percent) mixes pseudo-random noise
   into the dithered decisions. */
KELCC_API KelStatus keliReduceBits_8u_C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_8u_C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u_C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u_C4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s_C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s_C4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u8u_C1R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u8u_C4R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16u8u_AC4R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s8u_C1R(const Kel16s* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s8u_C3R(const Kel16s* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s8u_C4R(const Kel16s* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_16s8u_AC4R(const Kel16s* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f8u_C1R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f8u_C3R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f8u_C4R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f8u_AC4R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16u_C1R(const Kel32f* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16u_C3R(const Kel32f* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16u_C4R(const Kel32f* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16u_AC4R(const Kel32f* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16s_C1R(const Kel32f* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16s_C3R(const Kel32f* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16s_C4R(const Kel32f* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);
KELCC_API KelStatus keliReduceBits_32f16s_AC4R(const Kel32f* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, int noise, KelDitherType ditherType, int levels);

/* ============================================================ Demosaicing */
/* @section demosaic */
/* Bayer raw images to interleaved R, G, B. `src` is the origin of the whole
   raw image of srcSize pixels; srcRoi selects the pixels written, and dst
   points to the first of them. Neighbours are read from the whole image,
   also outside the region; the region is clipped at the right and bottom
   edges (a negative x or y is taken as 0). `grid` names the pattern of the
   image's top left 2 by 2 block. Steps are in bytes; the 16u members use
   srcStep >> 1 samples per source row (CFAToRGB also dstStep >> 1 per
   destination row; AHD places destination and tmp rows dstStep and tmpStep
   bytes apart).

   CFAToRGB: bilinear with a gradient test for green; any size from 2 by 2.
   DemosaicAHD: adaptive homogeneity-directed; any size from 5 by 5; single
   threaded; `tmp` is the caller's work memory of 30 rows, tmpStep bytes
   apart, each of at least (clipped region width + 8) samples of the image's
   type. KELCC_AHD_TMP_STEP and KELCC_AHD_TMP_BYTES size it. */
KELCC_API KelStatus keliCFAToRGB_8u_C1C3R(const Kel8u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel8u* dst, int dstStep, KelBayerGrid grid);
KELCC_API KelStatus keliCFAToRGB_16u_C1C3R(const Kel16u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel16u* dst, int dstStep, KelBayerGrid grid);
KELCC_API KelStatus keliDemosaicAHD_8u_C1C3R(const Kel8u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel8u* dst, int dstStep, KelBayerGrid grid, Kel8u* tmp, int tmpStep);
KELCC_API KelStatus keliDemosaicAHD_16u_C1C3R(const Kel16u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel16u* dst, int dstStep, KelBayerGrid grid, Kel16u* tmp, int tmpStep);
/* Rows of the AHD work buffer and the smallest row step in bytes for a
   clipped region `width` pixels wide and samples of `sampleBytes` bytes
   (1 for 8u, 2 for 16u); KELCC_AHD_TMP_BYTES(width, sampleBytes) is the
   whole buffer at that step. */
#define KELCC_AHD_TMP_ROWS 30
#define KELCC_AHD_TMP_STEP(width, sampleBytes) (((width) + 8) * (sampleBytes))
#define KELCC_AHD_TMP_BYTES(width, sampleBytes) (KELCC_AHD_TMP_ROWS * KELCC_AHD_TMP_STEP(width, sampleBytes))

/* ============================================================ YCoCg lifting */
/* @section ycocg */
/* Interleaved B, G, R (the RGB pair: R, G, B) to planes Y, Co, Cg with one
   common step, and back. _Rev forms are lifting steps that restore their
   input exactly. Only pointers are checked: a width or height below 1 does
   nothing and returns kelStatusOk. Inverse C4 forms write alpha as the
   fourth sample; forward C4 forms do not read it. */
KELCC_API KelStatus keliBGRToYCoCg_8u16s_C3P3R(const Kel8u* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToYCoCg_8u16s_C4P3R(const Kel8u* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToYCoCg_Rev_8u16s_C3P3R(const Kel8u* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliBGRToYCoCg_Rev_8u16s_C4P3R(const Kel8u* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToBGR_16s8u_P3C3R(const Kel16s* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToBGR_16s8u_P3C4R(const Kel16s* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi, Kel8u alpha);
KELCC_API KelStatus keliYCoCgToBGR_Rev_16s8u_P3C3R(const Kel16s* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToBGR_Rev_16s8u_P3C4R(const Kel16s* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi, Kel8u alpha);
KELCC_API KelStatus keliSBGRToYCoCg_16s_C3P3R(const Kel16s* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_16s_C4P3R(const Kel16s* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_Rev_16s_C3P3R(const Kel16s* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_Rev_16s_C4P3R(const Kel16s* src, int srcStep, Kel16s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_16s_P3C3R(const Kel16s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_16s_P3C4R(const Kel16s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi, Kel16s alpha);
KELCC_API KelStatus keliYCoCgToSBGR_Rev_16s_P3C3R(const Kel16s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_Rev_16s_P3C4R(const Kel16s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi, Kel16s alpha);
KELCC_API KelStatus keliSBGRToYCoCg_16s32s_C3P3R(const Kel16s* src, int srcStep, Kel32s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_16s32s_C4P3R(const Kel16s* src, int srcStep, Kel32s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_Rev_16s32s_C3P3R(const Kel16s* src, int srcStep, Kel32s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliSBGRToYCoCg_Rev_16s32s_C4P3R(const Kel16s* src, int srcStep, Kel32s* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_32s16s_P3C3R(const Kel32s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_32s16s_P3C4R(const Kel32s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi, Kel16s alpha);
KELCC_API KelStatus keliYCoCgToSBGR_Rev_32s16s_P3C3R(const Kel32s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToSBGR_Rev_32s16s_P3C4R(const Kel32s* const src[3], int srcStep, Kel16s* dst, int dstStep, KeliSize roi, Kel16s alpha);
/* The RGB pair: 8-bit planes, Co and Cg on 128. */
KELCC_API KelStatus keliRGBToYCoCg_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi);
KELCC_API KelStatus keliYCoCgToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi);

#ifdef __cplusplus
}
#endif
#endif /* KELCC_H */
