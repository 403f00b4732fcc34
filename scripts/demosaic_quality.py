#!/usr/bin/python3
"""Demosaicing quality on real photographs.

Each picture (astronaut, coffee and chelsea from python3-skimage) is sampled
through every Bayer grid with `kelcc mosaic`, rebuilt with `kelcc demosaic`
(bilinear with the gradient test, and AHD) and with OpenCV's Bayer
conversions (plain bilinear, edge-aware _EA and _VNG), and compared with the
original. Prints a PSNR table (dB, all three channels, an 8-pixel border left
out) and writes it with a side-by-side crop picture to the output folder.

    scripts/demosaic_quality.py [--kelcc build/tools/kelcc] [--out demosaic-quality]

Needs python3-opencv and python3-skimage (Debian packages, hence the system
interpreter). Not a unit test.
"""
import argparse
import os
import subprocess
import sys

import cv2
import numpy as np

GRIDS = ["rggb", "bggr", "gbrg", "grbg"]
PICTURES = ["astronaut", "coffee", "chelsea"]
BORDER = 8


def picture(name):
    import skimage.data
    rgb = getattr(skimage.data, name)()
    return np.ascontiguousarray(rgb[:, :, :3])


def psnr(a, b):
    a = a[BORDER:-BORDER, BORDER:-BORDER].astype(np.float64)
    b = b[BORDER:-BORDER, BORDER:-BORDER].astype(np.float64)
    mse = np.mean((a - b) ** 2)
    return float("inf") if mse == 0 else 10 * np.log10(255.0 ** 2 / mse)


def opencv_codes():
    """OpenCV names a pattern by the second row's second and third pixels."""
    return {"rggb": "BG", "bggr": "RG", "gbrg": "GR", "grbg": "GB"}


def run(cmd):
    subprocess.run(cmd, check=True)


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("--kelcc", default="build/tools/kelcc")
    ap.add_argument("--out", default="demosaic-quality")
    args = ap.parse_args()
    os.makedirs(args.out, exist_ok=True)
    methods = ["kel bilinear", "kel AHD", "cv bilinear", "cv EA", "cv VNG"]
    rows = []
    crops = None
    for name in PICTURES:
        rgb = picture(name)
        src = os.path.join(args.out, name + ".png")
        cv2.imwrite(src, cv2.cvtColor(rgb, cv2.COLOR_RGB2BGR))
        for grid in GRIDS:
            pgm = os.path.join(args.out, "%s-%s.pgm" % (name, grid))
            run([args.kelcc, "mosaic", src, pgm, "--grid", grid])
            raw = cv2.imread(pgm, cv2.IMREAD_UNCHANGED)
            outs = {}
            for method, key in (("bilinear", "kel bilinear"), ("ahd", "kel AHD")):
                out = os.path.join(args.out, "%s-%s-%s.png" % (name, grid, method))
                run([args.kelcc, "demosaic", pgm, out, "--grid", grid, "--method", method])
                outs[key] = cv2.cvtColor(cv2.imread(out), cv2.COLOR_BGR2RGB)
            code = opencv_codes()[grid]
            outs["cv bilinear"] = cv2.cvtColor(raw, getattr(cv2, "COLOR_Bayer%s2RGB" % code))
            outs["cv EA"] = cv2.cvtColor(raw, getattr(cv2, "COLOR_Bayer%s2RGB_EA" % code))
            outs["cv VNG"] = cv2.cvtColor(raw, getattr(cv2, "COLOR_Bayer%s2RGB_VNG" % code))
            rows.append((name, grid, [psnr(rgb, outs[m]) for m in methods]))
            if name == "astronaut" and grid == "rggb":
                y, x, s = 60, 200, 96  # the face: hair, eyes and teeth
                tiles = [rgb[y:y + s, x:x + s]] + [outs[m][y:y + s, x:x + s] for m in methods]
                crops = np.concatenate([np.kron(t, np.ones((3, 3, 1), np.uint8)) for t in tiles], axis=1)

    head = "| picture | grid | " + " | ".join(methods) + " |"
    lines = [head, "|" + "---|" * (len(methods) + 2)]
    for name, grid, vals in rows:
        lines.append("| %s | %s | " % (name, grid) + " | ".join("%.2f" % v for v in vals) + " |")
    means = [np.mean([r[2][k] for r in rows]) for k in range(len(methods))]
    lines.append("| mean | | " + " | ".join("%.2f" % v for v in means) + " |")
    table = "\n".join(lines)
    print(table)
    with open(os.path.join(args.out, "psnr.md"), "w") as f:
        f.write("PSNR in dB against the original, %d-pixel border left out\n\n" % BORDER + table + "\n")
    if crops is not None:
        path = os.path.join(args.out, "crops.png")
        cv2.imwrite(path, cv2.cvtColor(crops, cv2.COLOR_RGB2BGR))
        print("\ncrops (original, " + ", ".join(methods) + "): " + path)
    return 0


if __name__ == "__main__":
    sys.exit(main())
