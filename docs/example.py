import numpy as np, imageio, kelcc

rgb = np.asarray(imageio.imread("/usr/lib/python3/dist-packages/skimage/data/astronaut.png"))[..., :3]
y, u, v = kelcc.rgb_to_ycbcr420(rgb)                       # I420 planes: (H, W), (H/2, W/2) x 2
i420 = kelcc.ycbcr420_to_rgb(y, u, v)
raw = np.empty(rgb.shape[:2], np.uint8)                    # an RGGB Bayer mosaic of the photograph
raw[0::2, 0::2], raw[0::2, 1::2] = rgb[0::2, 0::2, 0], rgb[0::2, 1::2, 1]
raw[1::2, 0::2], raw[1::2, 1::2] = rgb[1::2, 0::2, 1], rgb[1::2, 1::2, 2]
ahd = kelcc.demosaic_ahd(raw, grid="rggb")
levels16 = kelcc.reduce_bits(rgb, levels=16, dither="fs")
for name, img in [("I420 and back", i420), ("AHD demosaicing", ahd), ("16 levels, Floyd-Steinberg", levels16)]:
    print(f"{name}: PSNR {10 * np.log10(255 ** 2 / np.mean((img - rgb.astype(float)) ** 2)):.1f} dB")
