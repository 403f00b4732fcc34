"""The layout-moving functions (subsampled YUV/YCbCr, 16-bit packed RGB,
BT.709, CbYCr, chroma grids): each member behind each function against the
C member called directly through ctypes on the same arrays, round trips,
known values and argument checks."""
import ctypes

import numpy as np
import pytest

import kelcc

H, W = 16, 24  # multiples of every grid (4 x 4) and of the filters' height (8)


def library():
    with open("/proc/self/maps") as maps:
        for line in maps:
            if "libkelcce9.so" in line:
                return ctypes.CDLL(line.split()[-1])
    raise RuntimeError("libkelcce9 is not loaded")


LIB = library()


class Size(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int32), ("height", ctypes.c_int32)]


def ceil_div(a, b):
    return -(-a // b)


def make_side(side, h, w, rng=None):
    """Arrays of one side of a member: random when rng is given, else zeros."""
    lay, dtype, c, sx, sy = side
    new = (lambda s: rng.integers(0, 256 if dtype == "uint8" else 65536, s, dtype=dtype)) if rng else \
        (lambda s: np.zeros(s, dtype))
    if lay == "C":
        return [new((h, w) if c == 1 else (h, w, c))]
    if lay == "P3S":
        return list(new((3, h, w)))
    ch, cw = ceil_div(h, sy), ceil_div(w, sx)
    if lay == "P3":
        return [new((h, w)), new((ch, cw)), new((ch, cw))]
    return [new((h, w)), new((ch, cw, 2))]


def c_args(side, arrays, out):
    ptr = lambda a: ctypes.c_void_p(a.ctypes.data)
    lay = side[0]
    if lay == "C":
        return [ptr(arrays[0]), arrays[0].strides[0]]
    if lay == "P2":
        return [ptr(arrays[0]), arrays[0].strides[0], ptr(arrays[1]), arrays[1].strides[0]]
    ptrs = (ctypes.c_void_p * 3)(*[a.ctypes.data for a in arrays])
    if lay == "P3S":
        return [ptrs, arrays[0].strides[0]]
    return [ptrs, (ctypes.c_int * 3)(*[a.strides[0] for a in arrays])]


MEMBERS = [(name, v) for name, vs in sorted(kelcc._members.items()) for v in vs]


@pytest.mark.parametrize("name,v", MEMBERS, ids=[f"{n}-{v['order']}-{v['member']}" for n, v in MEMBERS])
def test_equals_the_c_member(name, v):
    rng = np.random.default_rng(len(v["member"]))
    src = make_side(v["src"], H, W, rng)
    if v["src"][0] == "P3S":
        src = list(np.ascontiguousarray(np.stack(src)))
    kw = {"order": v["order"]}
    if v["alpha"]:
        kw["alpha"] = 77
    got = getattr(kelcc, name)(*src, **kw)
    got = list(got) if isinstance(got, tuple) else [got]
    ref = make_side(v["dst"], H, W)
    if v["dst"][0] == "P3S":
        ref = list(np.zeros((3, H, W), np.uint8))
    fn = getattr(LIB, v["member"])
    fn.restype = ctypes.c_int
    args = c_args(v["src"], src, False) + c_args(v["dst"], ref, True) + [Size(W, H)] + ([77] if v["alpha"] else [])
    assert fn(*args) == 0
    assert len(got) == len(ref)
    for g, r in zip(got, ref):
        np.testing.assert_array_equal(g, r)
    if v["dst"][0] == "C" and v["dst"][2] == 4 and v["alpha"]:
        assert (got[0][..., 3] == 77).all()
    # padded rows (zero copy over the stride) give the same result
    padded = []
    for a in src:
        big = np.zeros((a.shape[0], a.shape[1] + 5) + a.shape[2:], a.dtype)
        big[:, : a.shape[1]] = a
        padded.append(big[:, : a.shape[1]])
    again = getattr(kelcc, name)(*padded, **kw)
    for g, r in zip(again if isinstance(again, tuple) else [again], got):
        np.testing.assert_array_equal(g, r)


def smooth(h, w):
    y, x = np.mgrid[0:h, 0:w]
    return np.stack([x * 200 // w + 20, y * 200 // h + 20, (x + y) * 100 // (h + w) + 60], -1).astype(np.uint8)


@pytest.mark.parametrize("fwd,inv,kw,tol", [
    ("rgb_to_ycbcr422", "ycbcr422_to_rgb", {}, 6), ("rgb_to_ycbcr422", "ycbcr422_to_rgb", {"order": "bgr"}, 6),
    ("rgb_to_yuv422", "yuv422_to_rgb", {}, 6), ("rgb_to_yuv420", "yuv420_to_rgb", {}, 6),
    ("rgb_to_yuy2", "yuy2_to_rgb", {}, 6), ("rgb_to_yvyu", "yvyu_to_rgb", {}, 6),
    ("rgb_to_yuv422_packed", "yuv422_packed_to_rgb", {}, 6), ("rgb_to_cbycr422", "cbycr422_to_rgb", {}, 6),
    ("rgb_to_ycbcr411", "ycbcr411_to_rgb", {"order": "bgr"}, 10),
    ("bgr_to_ycbcr420_709csc", "ycbcr420_709csc_to_bgr", {}, 6),
    ("bgr_to_cbycr422_709hdtv", "cbycr422_709hdtv_to_bgr", {}, 6),
    ("rgb_to_rgb565", "rgb565_to_rgb", {}, 7), ("rgb_to_rgb565", "rgb565_to_rgb", {"order": "bgr"}, 7),
])
def test_round_trips(fwd, inv, kw, tol):
    img = smooth(32, 48)
    mid = getattr(kelcc, fwd)(img, **kw)
    back = getattr(kelcc, inv)(*(mid if isinstance(mid, tuple) else (mid,)), **kw)
    # (CbYCr filters chroma across pairs and treats the first pair on its own)
    assert np.abs(back.astype(int) - img)[:, 2:-2].max() <= tol


def test_layout_round_trips_are_exact():
    rng = np.random.default_rng(3)
    y = rng.integers(0, 256, (16, 24), dtype=np.uint8)
    cb, cr = rng.integers(0, 256, (2, 16, 12), dtype=np.uint8)
    yuy2 = kelcc.ycbcr422_to_packed422(y, cb, cr)
    assert yuy2.shape == (16, 24, 2)
    np.testing.assert_array_equal(yuy2[..., 0], y)
    np.testing.assert_array_equal(yuy2[:, 0::2, 1], cb)
    for p, q in zip(kelcc.packed422_to_ycbcr422(yuy2), (y, cb, cr)):
        np.testing.assert_array_equal(p, q)
    np.testing.assert_array_equal(kelcc.uyvy_to_yuy2(kelcc.yuy2_to_uyvy(yuy2)), yuy2)
    for p, q in zip(kelcc.packed422_to_ycbcr422(kelcc.yuy2_to_uyvy(yuy2), order="uyvy"), (y, cb, cr)):
        np.testing.assert_array_equal(p, q)
    # 4:2:0 -> NV12 -> packed -> planes keeps the 4:2:0 samples
    y420, u, v = kelcc.packed422_to_ycbcr420(yuy2)
    np.testing.assert_array_equal(y420, y)
    nv = kelcc.packed422_to_nv12(yuy2)
    np.testing.assert_array_equal(nv[1][..., 0], u)
    # 4:2:0 chroma moved to the 1620 and 4:1:1 grids and back: flat chroma stays
    planes = (y, np.full((8, 12), 77, np.uint8), np.full((8, 12), 201, np.uint8))
    for there, back in (("ycbcr420_to_1620", "ycbcr1620_to_420"), ("ycbcr420_to_411", "ycbcr411_to_420")):
        for p, q in zip(getattr(kelcc, back)(*getattr(kelcc, there)(*planes)), planes):
            np.testing.assert_array_equal(p, q)


def test_known_values():
    # white in studio range -> all ones in every 16-bit format, less the unused top bits
    white = np.zeros((2, 4, 3), np.uint8)
    white[...] = (235, 128, 128)
    for fmt, word in [("rgb565", 0xFFFF), ("bgr555", 0x7FFF), ("rgb444", 0x0FFF), ("bgr444", 0x0FFF)]:
        assert (kelcc.ycbcr_to_packed16(white, order=fmt) == word).all(), fmt
    # mid gray -> Y 126, chroma 128 (studio range)
    gray = np.full((4, 8, 3), 128, np.uint8)
    y, cb, cr = kelcc.rgb_to_ycbcr422(gray)
    assert (y == 126).all() and (cb == 128).all() and (cr == 128).all()
    assert (kelcc.yuy2_to_rgb(kelcc.rgb_to_yuy2(gray), order="bgr", alpha=9)[..., 3] == 9).all()
    # the BGR565 member puts blue in the low bits
    assert kelcc.rgb_to_rgb565(np.array([[[255, 0, 0]]], np.uint8), order="bgr")[0, 0] == 0x001F


def test_odd_sizes_and_rounded_down_chroma():
    img = smooth(9, 13)
    y, u, v = kelcc.rgb_to_yuv422(img)
    assert u.shape == (9, 7)
    # planes rounded down (as other tools make them) are extended by their last column
    a = kelcc.yuv422_to_rgb(y, u[:, :6], v[:, :6])
    b = kelcc.yuv422_to_rgb(y, np.pad(u[:, :6], ((0, 0), (0, 1)), mode="edge"), np.pad(v[:, :6], ((0, 0), (0, 1)), mode="edge"))
    np.testing.assert_array_equal(a, b)


def test_bottom_up_and_out():
    img = smooth(16, 24)
    ref = kelcc.rgb_to_ycbcr422(img)
    for p, q in zip(kelcc.rgb_to_ycbcr422(img[::-1]), ref):
        np.testing.assert_array_equal(p[::-1], q)
    out = tuple(np.zeros(r.shape, np.uint8) for r in ref)
    assert kelcc.rgb_to_ycbcr422(img, out=out)[0] is out[0]
    # members that take unsigned steps read a bottom-up input from a copy and refuse a bottom-up out
    planes = kelcc.rgb_to_yuv420(img)
    r411 = kelcc.ycbcr420_to_411(*planes)
    flipped = kelcc.ycbcr420_to_411(*[np.ascontiguousarray(p[::-1]) for p in planes])
    for p, q in zip(kelcc.ycbcr420_to_411(*[p[::-1] for p in planes]), flipped):
        np.testing.assert_array_equal(p, q)
    with pytest.raises(ValueError, match="positive"):
        kelcc.ycbcr420_to_411(*planes, out=tuple(np.zeros(r.shape, np.uint8)[::-1] for r in r411))
    # an out= over the input: the input is read from a copy
    yuy2 = kelcc.rgb_to_yuy2(img)
    ref = kelcc.yuy2_to_uyvy(yuy2)
    kelcc.yuy2_to_uyvy(yuy2, out=yuy2)
    np.testing.assert_array_equal(yuy2, ref)


@pytest.mark.parametrize("call,exc,text", [
    (lambda: kelcc.rgb_to_yuy2(np.zeros((4, 4, 3), np.uint16)), TypeError, "no form"),
    (lambda: kelcc.rgb_to_yuy2(np.zeros((4, 4, 4), np.uint8)), ValueError, "order='rgb'"),
    (lambda: kelcc.rgb_to_yuy2(np.zeros((4, 4, 3), np.uint8), order="cmyk"), ValueError, "one of 'rgb', 'bgr'"),
    (lambda: kelcc.yuy2_to_rgb(np.zeros((4, 4, 2), np.uint8), alpha=300, order="bgr"), ValueError, "0..255"),
    (lambda: kelcc.ycbcr422_to_rgb(*[np.zeros((4, 4), np.uint8)] * 3), ValueError, "4 x 2 samples"),
    (lambda: kelcc.ycbcr422_to_rgb(np.zeros((4, 4), np.uint8)), TypeError, "no form"),
    (lambda: kelcc.rgb565_to_rgb(np.zeros((4, 4), np.uint8)), TypeError, "uint16"),
    (lambda: kelcc.nv12_to_packed422(np.zeros((4, 4), np.uint8), np.zeros((2, 2, 3), np.uint8)), ValueError, "pairs"),
    (lambda: kelcc.rgb_to_yuy2(np.zeros((4, 4, 3), np.uint8), out=np.zeros((4, 4, 3), np.uint8)), ValueError, "shape"),
    (lambda: kelcc.ycbcr420_to_1620(np.zeros((6, 6), np.uint8), *[np.zeros((3, 3), np.uint8)] * 2), kelcc.KelError,
     "kelStatusBadSize"),
])
def test_bad_arguments(call, exc, text):
    with pytest.raises(exc) as info:
        call()
    assert text in str(info.value)
