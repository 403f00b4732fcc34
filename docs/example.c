#include <kelcc.h>
#include <stdio.h>

int main(void) {
  enum { W = 64, H = 48 };
  static Kel8u rgb[H][3 * W], y[H][W], cb[H / 2][W / 2], cr[H / 2][W / 2];
  for (int r = 0; r < H; ++r)
    for (int x = 0; x < 3 * W; ++x) rgb[r][x] = (Kel8u)(r + x);  /* any RGB picture */
  Kel8u* planes[3] = {&y[0][0], &cb[0][0], &cr[0][0]};
  const int steps[3] = {W, W / 2, W / 2};                  /* row steps in bytes */
  KelStatus st = keliRGBToYCbCr420_8u_C3P3R(&rgb[0][0], 3 * W, planes, steps, (KeliSize){W, H});
  printf("status %d (0: ok), Y %d, Cb %d, Cr %d\n", st, y[0][0], cb[0][0], cr[0][0]);
  return st < 0;
}
