"""tpxcc.raw: one member of each family against the same calls made from C
(c_calls.c), with images contiguous, in padded rows and upside down
(negative steps); statuses as exceptions and warnings."""

import os
import subprocess

import numpy as np
import pytest

from tpxcc import Status, TpxError, raw

W, H = 16, 6
IN = ((np.arange(W * H * 8) * 7 + (np.arange(W * H * 8) >> 5)) & 255).astype(np.uint8)
INF = (np.arange(W * H * 4) % 97).astype(np.float32) / np.float32(96)


def laid(a, how):
    """The values of `a` contiguous (0), in rows padded by 3 pixels (1), or
    stored upside down and viewed with a negative step (2)."""
    if how == 1:
        big = np.zeros((a.shape[0], a.shape[1] + 3) + a.shape[2:], a.dtype)
        big[:, :a.shape[1]] = a
        return big[:, :a.shape[1]]
    return a.copy() if how == 0 else np.ascontiguousarray(a[::-1])[::-1]


def img(offset, shape, dtype=np.uint8, data=IN):
    n = int(np.prod(shape)) * np.dtype(dtype).itemsize
    return data.view(np.uint8)[offset:offset + n].view(dtype).reshape(shape)


def python_calls(how):
    def src(*args, **kw):
        return laid(img(*args, **kw), lay[0])

    def dst(shape, dtype=np.uint8):
        out = laid(np.zeros(shape, dtype), lay[0])
        outs.append(out)
        return out

    outs, st, lay = [], [], [how]
    p444 = [src(i * W * H, (H, W)) for i in range(3)]
    p420 = [src(0, (H, W)), src(W * H, (H // 2, W // 2)), src(W * H * 5 // 4, (H // 2, W // 2))]
    st.append(raw.tpxiYCbCrToRGB_8u_P3C4R(p444, dst((H, W, 4)), alpha=200))
    st.append(raw.tpxiBGRToYCbCr420_8u_C3P2R(src(0, (H, W, 3)), dst((H, W)), dst((H // 2, W))))
    st.append(raw.tpxiYCbCr420ToBGR_8u_P3C4R(p420, dst((H, W, 4)), alpha=9))
    st.append(raw.tpxiColorToGray_32f_C3C1R(src(0, (H, W, 3), np.float32, INF), dst((H, W), np.float32),
                                            coeffs=[0.2, 0.5, 0.3]))
    st.append(raw.tpxiCFAToRGB_16u_C1C3R(src(0, (H, W), np.uint16), (1, 1, W - 2, H - 2), (W, H),
                                         dst((H - 2, W - 2, 3), np.uint16), raw.constants["tpxBayerRGGB"], 0))
    st.append(raw.tpxiCFAToBGRA_VNG_8u_C1C4R_L(src(0, (H, W)), (0, 0, W, H), (W, H), [1, 0.5, 2, 1],
                                               dst((H, W, 4)), raw.constants["tpxBayerGBRG"]))
    st.append(raw.tpxiYCbCr420ToYCbCr422_8u_P3R(p420, [dst((H, W)), dst((H, W // 2)), dst((H, W // 2))]))
    st.append(raw.tpxiBGRToYCoCg_8u16s_C3P3R(src(0, (H, W, 3)), [dst((H, W), np.int16) for _ in range(3)]))
    st.append(raw.tpxiRGBToHSV_16u_C3R(src(0, (H, W, 3), np.uint16), dst((H, W, 3), np.uint16)))
    st.append(raw.tpxiBGRToLab_8u16u_C3R(src(0, (H, W, 3)), dst((H, W, 3), np.uint16)))
    lay[0] = min(how, 1)  # the colour twist, gamma and bit-depth reduction refuse steps below 1
    twist = [[0.5, 0.25, 0, 10], [0, 1, 0, -20], [0.125, 0, 0.75, 3]]
    st.append(raw.tpxiColorTwist32f_16s_C3R(src(0, (H, W, 3), np.int16), dst((H, W, 3), np.int16), twist=twist))
    st.append(raw.tpxiGammaFwd_32f_C3R(src(0, (H, W, 3), np.float32, INF), dst((H, W, 3), np.float32), vMin=0, vMax=1))
    size = np.zeros(1, np.int32)
    st.append(raw.tpxiReduceBitsGetBufferSize(3, W, 0, 1, size))
    st.append(raw.tpxiReduceBits_16u8u_C3R(src(0, (H, W, 3), np.uint16), dst((H, W, 3)), noise=0, ditherType=1,
                                           levels=16, pBuffer=np.zeros(size[0], np.uint8)))
    return [np.ascontiguousarray(o).tobytes() for o in outs], st


@pytest.mark.parametrize("how", [0, 1, 2], ids=["contiguous", "padded", "negative-step"])
def test_every_family_matches_the_c_calls(how):
    c = subprocess.run([os.environ["TPXCC_C_CALLS"]], capture_output=True, check=True).stdout
    outs, statuses = python_calls(how)
    at = 0
    for i, o in enumerate(outs):
        assert o == c[at:at + len(o)], "destination %d differs" % i
        at += len(o)
    assert list(np.frombuffer(c[at:], np.int32)) == statuses


def test_errors_raise_and_warnings_come_back():
    rgb, y = np.zeros((5, 7, 3), np.uint8), np.zeros((5, 7), np.uint8)
    with pytest.raises(TpxError) as e:
        raw.tpxiBGRToYCbCr420_8u_C3P2R(rgb, y, y, roiSize=(1, 1))
    assert (e.value.name, e.value.status) == ("tpxStatusBadSize", -6)
    assert "tpxiBGRToYCbCr420_8u_C3P2R" in str(e.value)
    assert raw.tpxiBGRToYCbCr420_8u_C3P2R(rgb, y, y) == Status.tpxStatusOddSize  # 7x5: odd width and height
    with pytest.raises(TpxError, match="tpxStatusBadStep"):
        raw.tpxiGammaFwd_8u_C3R(rgb[::-1], rgb)
    with pytest.raises(TypeError):
        raw.tpxiBGRToYCbCr420_8u_C3P2R(rgb.astype(np.uint16), y, y)
    with pytest.raises(ValueError):  # pixels of a row must be contiguous
        raw.tpxiBGRToYCbCr420_8u_C3P2R(rgb[:, ::2], y[:, :4], y[:, :4])
