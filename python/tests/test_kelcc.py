"""Tests of the Python module over numpy arrays: layouts (padded, bottom-up,
non-contiguous), argument checks, statuses, threads and a photograph."""
import concurrent.futures
import os
import threading
import time
import warnings

import numpy as np
import pytest

import kelcc

def rand(shape, dtype):
    """Random samples over the dtype's range, the same on every call."""
    rng = np.random.default_rng(7)
    if np.dtype(dtype).kind == "f":
        return rng.random(shape, dtype=np.float32)
    info = np.iinfo(dtype)
    return rng.integers(info.min, info.max, shape, dtype=dtype, endpoint=True)


def smooth(h, w):
    """A smooth RGB picture, for round trips through subsampled chroma."""
    y, x = np.mgrid[0:h, 0:w]
    return np.stack([x * 200 // w + 20, y * 200 // h + 20, (x + y) * 100 // (h + w) + 60], -1).astype(np.uint8)


def padded(a, extra=13):
    """The same pixels in rows `extra` samples longer than needed."""
    big = np.zeros((a.shape[0], a.shape[1] + extra) + a.shape[2:], a.dtype)
    big[:, : a.shape[1]] = a
    return big[:, : a.shape[1]]


# (function, dtype, channels, keyword arguments)
PIXEL_CASES = [
    ("rgb_to_yuv", np.uint8, 3, {}), ("yuv_to_rgb", np.uint8, 4, {}),
    ("rgb_to_xyz", np.uint16, 3, {}), ("xyz_to_rgb", np.float32, 4, {}),
    ("rgb_to_hsv", np.uint8, 3, {}), ("hsv_to_rgb", np.uint16, 3, {}),
    ("rgb_to_hls", np.int16, 3, {}), ("hls_to_rgb", np.float32, 3, {}),
    ("rgb_to_luv", np.float32, 3, {}), ("luv_to_rgb", np.uint8, 3, {}),
    ("rgb_to_ycc", np.int16, 4, {}), ("bgr_to_lab", np.uint8, 3, {"out_dtype": np.uint16}),
    ("lab_to_bgr", np.uint16, 3, {}), ("rgb_to_gray", np.float32, 3, {}),
    ("rgb_to_gray", np.uint8, 4, {"coeffs": [0.5, 0.25, 0.25]}),
    ("gamma_fwd", np.uint8, 3, {}), ("gamma_inv", np.uint16, 4, {}),
    ("gamma_fwd", np.float32, 3, {"vmin": 0.0, "vmax": 2.0}),
    ("color_twist", np.int16, 3, {"matrix": [[0.5, 0.2, 0.1, 3], [0, 1, 0, -2], [0.3, 0.3, 0.3, 0]]}),
    ("color_twist", np.float32, 4, {"matrix": np.eye(4) * 0.5}),
    ("reduce_bits", np.uint8, 3, {"levels": 4, "dither": "none"}),
    ("reduce_bits", np.float32, 1, {"levels": 16, "dither": "none", "out_dtype": np.uint16}),
    ("tone_map_linear", np.float32, 1, {}), ("tone_map_mean", np.float32, 1, {}),
]


def image(dtype, c, h=29, w=41):
    return rand((h, w) if c == 1 else (h, w, c), dtype)


@pytest.mark.parametrize("name,dtype,c,kw", PIXEL_CASES)
def test_layouts_match_contiguous(name, dtype, c, kw):
    fn = getattr(kelcc, name)
    img = image(dtype, c)
    ref = fn(img, **kw)
    assert ref.shape[:2] == img.shape[:2]
    # bottom-up, padded, cropped and non-contiguous views give the same pixels
    np.testing.assert_array_equal(fn(img[::-1], **kw)[::-1], ref)
    np.testing.assert_array_equal(fn(padded(img), **kw), ref)
    np.testing.assert_array_equal(fn(np.asfortranarray(img), **kw), ref)
    big = np.zeros((img.shape[0] + 4, img.shape[1] * 2) + img.shape[2:], img.dtype)
    big[2:-2, ::2] = img
    np.testing.assert_array_equal(fn(big[2:-2, ::2], **kw), ref)
    # one row broadcast down the image (row stride 0) is read from a copy
    np.testing.assert_array_equal(fn(np.broadcast_to(img[:1], img.shape), **kw), fn(img[:1].repeat(29, 0), **kw))
    # into a caller's padded destination
    out = padded(np.zeros_like(ref), 7)
    assert fn(img, out=out, **kw) is out
    np.testing.assert_array_equal(out, ref)


@pytest.mark.parametrize("name,dtype,kw", [("gamma_fwd", np.uint8, {}), ("rgb_to_hls", np.float32, {}),
                                           ("gamma_inv", np.float32, {"vmax": 2.0}),
                                           ("color_twist", np.uint16, {"matrix": np.ones((3, 4)) / 3})])
def test_in_place(name, dtype, kw):
    fn = getattr(kelcc, name)
    img = image(dtype, 3)
    ref = fn(img, **kw)
    assert fn(img, out=img, **kw) is img
    np.testing.assert_array_equal(img, ref)
    # in place on a bottom-up view
    img = image(dtype, 3)
    view = img[::-1]
    fn(view, out=view, **kw)
    np.testing.assert_array_equal(img, ref)


def test_in_place_uses_the_in_place_member():
    img = np.zeros((4, 4, 3), np.float32)
    with pytest.raises(kelcc.KelError) as info:
        kelcc.gamma_fwd(img, vmin=1, vmax=0, out=img)
    assert info.value.function == "keliGammaFwd_32f_C3IR"


def test_zero_copy_out_views():
    img = image(np.uint8, 3)
    buf = np.full((29, 50, 3), 9, np.uint8)
    out = buf[::-1, 3:44]
    kelcc.rgb_to_xyz(img, out=out)
    np.testing.assert_array_equal(out, kelcc.rgb_to_xyz(img))
    assert (buf[:, :3] == 9).all() and (buf[:, 44:] == 9).all()


@pytest.mark.parametrize("call,exc,text", [
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 3), np.float64)), TypeError, "float64"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 2), np.uint8)), ValueError, "channels"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4,), np.uint8)), ValueError, "(H, W)"),
    (lambda: kelcc.rgb_to_yuv([[1, 2, 3]]), TypeError, "numpy array"),
    (lambda: kelcc.rgb_to_hsv(np.zeros((4, 4, 3), np.float32)), TypeError, "uint8"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 3), np.uint8), out=np.zeros((4, 5, 3), np.uint8)), ValueError, "shape"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 3), np.uint8), out=np.zeros((4, 4, 3), np.int16)), TypeError, "uint8"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 3), np.uint8), out=np.zeros((4, 8, 3), np.uint8)[:, ::2]),
     ValueError, "contiguous"),
    (lambda: kelcc.rgb_to_yuv(np.zeros((4, 4, 3), np.uint8), out=np.broadcast_to(np.zeros(3, np.uint8), (4, 4, 3))),
     ValueError, "read-only"),
    (lambda: kelcc.gamma_fwd(np.zeros((4, 4, 3), np.uint8), out=np.zeros((4, 4, 3), np.uint8)[::-1]),
     ValueError, "positive"),
    (lambda: kelcc.color_twist(np.zeros((4, 4, 3), np.uint8), np.eye(3)), ValueError, "3 x 4"),
    (lambda: kelcc.reduce_bits(np.zeros((4, 4), np.uint8), dither="floyd"), ValueError, "dither"),
    (lambda: kelcc.reduce_bits(np.zeros((4, 4), np.uint8), out_dtype=np.int16), TypeError, "int16"),
    (lambda: kelcc.cfa_to_rgb(np.zeros((4, 4), np.uint8), grid="rgbg"), ValueError, "grid"),
    (lambda: kelcc.ycbcr420_to_rgb(*[np.zeros((8, 8), np.uint8)] * 3), ValueError, "half"),
    (lambda: kelcc.ycocg_to_bgr(*[np.zeros((4, 4), np.int16)] * 3, out_dtype=np.float32), TypeError, "out_dtype"),
    (lambda: kelcc.ycocg_to_bgr(*[np.zeros((4, 4), np.int16)] * 3, alpha=256), ValueError, "alpha"),
    (lambda: kelcc.ycocg_to_bgr(*[np.zeros((4, 4), np.int16)] * 2, np.zeros((4, 4), np.int32)), TypeError, "cg"),
    (lambda: kelcc.bgr_to_ycocg(np.zeros((4, 4, 3), np.uint8), out=(np.zeros((4, 4), np.int16),) * 2),
     ValueError, "3 arrays"),
])
def test_bad_arguments(call, exc, text):
    with pytest.raises(exc, match=None) as info:
        call()
    assert text in str(info.value)


@pytest.mark.parametrize("call,name", [
    (lambda: kelcc.rgb_to_yuv(np.zeros((0, 4, 3), np.uint8)), "kelStatusBadSize"),
    (lambda: kelcc.reduce_bits(np.zeros((4, 4), np.uint8), levels=1), "kelStatusBadLevels"),
    (lambda: kelcc.reduce_bits(np.zeros((4, 4), np.uint8), noise=101), "kelStatusBadNoise"),
    (lambda: kelcc.gamma_fwd(np.zeros((4, 4, 3), np.float32), vmin=1, vmax=0), "kelStatusBadRange"),
    (lambda: kelcc.demosaic_ahd(np.zeros((4, 4), np.uint16)), "kelStatusBadSize"),
])
def test_errors_carry_status(call, name):
    with pytest.raises(kelcc.KelError) as info:
        call()
    err = info.value
    assert isinstance(err, RuntimeError) and err.name == name
    assert kelcc.STATUS_NAMES[err.status] == name and name in str(err)


def test_status_names_and_warnings():
    assert kelcc.status_name(-14) == "kelStatusBadStep" and len(kelcc.STATUS_NAMES) == 12
    with pytest.warns(kelcc.KelWarning, match="kelStatusOddSizeTrimmed"):
        kelcc.rgb_to_ycbcr420(smooth(9, 12))
    neg = -np.ones((5, 5), np.float32)
    out = np.full((5, 5), 3, np.uint8)
    with pytest.warns(kelcc.KelWarning, match="kelStatusNothingDone"):
        kelcc.tone_map_linear(neg, out=out)
    assert (out == 3).all()


def test_ycbcr420_and_nv12_round_trips():
    img = smooth(48, 64)
    y, cb, cr = kelcc.rgb_to_ycbcr420(img)
    assert y.shape == (48, 64) and cb.shape == cr.shape == (24, 32)
    assert np.abs(kelcc.ycbcr420_to_rgb(y, cb, cr).astype(int) - img).max() <= 6
    # the BGR member (its own rounding) on the swapped picture
    ybgr = kelcc.rgb_to_ycbcr420(img[..., ::-1], order="bgr")[0]
    assert np.abs(ybgr.astype(int) - y).max() <= 1
    y2, uv = kelcc.i420_to_nv12(y, cb, cr)
    assert uv.shape == (24, 32, 2)
    np.testing.assert_array_equal(uv[..., 0], cb)
    for pair in (uv, uv.reshape(24, 64)):
        for p, q in zip(kelcc.nv12_to_i420(y2, pair), (y, cb, cr)):
            np.testing.assert_array_equal(p, q)
    # bottom-up planes: the same picture upside down
    np.testing.assert_array_equal(kelcc.ycbcr420_to_rgb(y[::-1], cb[::-1], cr[::-1])[::-1],
                                  kelcc.ycbcr420_to_rgb(y, cb, cr))
    for p, q in zip(kelcc.i420_to_nv12(y[::-1], cb[::-1], cr[::-1]), (y2, uv)):
        np.testing.assert_array_equal(p[::-1], q)


@pytest.mark.parametrize("fwd,inv,dtype,tol", [
    ("rgb_to_hsv", "hsv_to_rgb", np.uint8, 6), ("rgb_to_hls", "hls_to_rgb", np.float32, 1e-4),
    ("rgb_to_xyz", "xyz_to_rgb", np.float32, 3e-2), ("rgb_to_luv", "luv_to_rgb", np.float32, 1e-3),
    ("gamma_fwd", "gamma_inv", np.float32, 1e-4), ("gamma_fwd", "gamma_inv", np.uint16, 2),
])
def test_round_trips(fwd, inv, dtype, tol):
    img = image(dtype, 3) if dtype != np.float32 else image(dtype, 3) * 0.9 + 0.05
    back = getattr(kelcc, inv)(getattr(kelcc, fwd)(img))
    assert np.abs(back.astype(np.float64) - img).max() <= tol


@pytest.mark.parametrize("dtype,c,out_dtype", [(np.uint8, 3, None), (np.uint8, 4, None),
                                               (np.int16, 3, None), (np.int16, 4, np.int32)])
def test_reversible_ycocg_is_exact(dtype, c, out_dtype):
    img = image(dtype, c) if dtype == np.uint8 else rand((29, 41, c), np.int16) // 4
    y, co, cg = kelcc.bgr_to_ycocg(img[::-1], out_dtype=out_dtype)
    back = kelcc.ycocg_to_bgr(y.copy(), co, padded(cg), out_dtype=None if dtype == np.uint8 else np.int16,
                              alpha=None if c == 3 else 77)
    np.testing.assert_array_equal(back[..., :3], img[::-1, :, :3])
    if c == 4:
        assert (back[..., 3] == 77).all()


@pytest.mark.parametrize("fn", [kelcc.cfa_to_rgb, kelcc.demosaic_ahd])
def test_demosaic_grids(fn):
    rgb = smooth(32, 40).astype(np.uint16) * 257
    raw = np.empty((32, 40), np.uint16)
    raw[0::2, 0::2], raw[0::2, 1::2] = rgb[0::2, 0::2, 0], rgb[0::2, 1::2, 1]
    raw[1::2, 0::2], raw[1::2, 1::2] = rgb[1::2, 0::2, 1], rgb[1::2, 1::2, 2]
    out = fn(raw, grid="rggb")
    assert np.abs(out[2:-2, 2:-2].astype(int) - rgb[2:-2, 2:-2]).max() < 6 * 257
    np.testing.assert_array_equal(fn(raw[::-1], grid="gbrg")[::-1], out)


def test_threads_agree():
    img = image(np.uint8, 3, 240, 320)
    raw = image(np.uint8, 1, 120, 160)
    jobs = [lambda: kelcc.rgb_to_luv(img), lambda: kelcc.demosaic_ahd(raw),
            lambda: kelcc.reduce_bits(img[..., 0], dither="stucki", noise=20),
            lambda: kelcc.gamma_inv(img[::-1])]
    ref = [j() for j in jobs]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        futures = [(i, pool.submit(jobs[i])) for i in range(len(jobs)) for _ in range(8)]
        for i, f in futures:
            np.testing.assert_array_equal(f.result(), ref[i])


PHOTO = "/usr/lib/python3/dist-packages/skimage/data/astronaut.png"


def test_photograph():
    if not os.path.exists(PHOTO):
        pytest.skip("python3-skimage is not installed")
    io = pytest.importorskip("imageio")
    rgb = np.asarray(io.imread(PHOTO))[..., :3]
    y, cb, cr = kelcc.rgb_to_ycbcr420(rgb)
    err = kelcc.ycbcr420_to_rgb(y, cb, cr).astype(np.float64) - rgb
    assert 10 * np.log10(255 ** 2 / np.mean(err ** 2)) > 30
    gray = kelcc.rgb_to_gray(rgb)
    assert abs(gray.mean() - (rgb @ np.array([0.299, 0.587, 0.114])).mean()) < 2
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        np.testing.assert_array_equal(kelcc.ycocg_to_bgr(*kelcc.bgr_to_ycocg(rgb)), rgb)


def test_gil_released_during_calls():
    """Python code on the main thread runs while another thread is inside a call."""
    raw = image(np.uint8, 1, 2048, 2048)
    span = []

    def work():
        for _ in range(4):
            t0 = time.perf_counter()
            kelcc.demosaic_ahd(raw)
            span.append((t0, time.perf_counter()))

    stamps = []
    worker = threading.Thread(target=work)
    worker.start()
    while worker.is_alive():
        stamps.append(time.perf_counter())
    worker.join()
    # Stamps in the middle half of a call: the main thread ran Python code
    # meanwhile, which it can only do if the call let go of the GIL.
    inside = sum(1 for t0, t1 in span for s in stamps if t0 + (t1 - t0) / 4 < s < t1 - (t1 - t0) / 4)
    assert inside > 100
