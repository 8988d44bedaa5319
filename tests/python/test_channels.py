"""IirChannels over 2-D arrays: every row bit-identical to a lone IirProcess
with the same design; bad arrays refused without touching the state."""
import numpy as np
import pytest

import mivora

FS = 48000.0
DESIGNS = [lambda f: f.setCoefPDFPQ(1000.0, FS, 6.0, 0.7), lambda f: f.setCoefLPFChev(5, 8000.0, 0.5, FS),
           lambda f: f.setCoefBEFIChev(2, 700.0, 3000.0, 360.0, FS), lambda f: f.setCoefHPF(3, 80.0, FS)]
SPLITS = [0, 0, 1, 257, 258, 900, 1001]


@pytest.mark.parametrize("channels, layout", [(1, "planar"), (3, "interleaved"), (8, "planar"), (16, "interleaved")])
def test_each_row_is_a_lone_filter_in_any_blocking(channels, layout):
    x = np.random.default_rng(channels).uniform(-1, 1, (channels, 1001)).astype(np.float32)
    x[0, :3] = [-0.0, 1e-42, -1e-40]
    x[-1, 700] = np.nan if channels > 2 else x[-1, 700]
    lone, ch = [mivora.IirProcess() for _ in range(channels)], mivora.IirChannels(channels)
    for c in range(channels):
        DESIGNS[c % 4](lone[c]), DESIGNS[c % 4](ch.channel(c))
    want = np.stack([lone[c].process(x[c]) for c in range(channels)])
    got = []
    for i, (a, b) in enumerate(zip(SPLITS, SPLITS[1:])):
        block = x[:, a:b] if layout == "planar" else x[:, a:b].T
        if i % 3 == 1:
            got.append(np.ascontiguousarray(block))
            ch.process_inplace(got[-1], layout=layout)
        else:  # float64, or a strided float32 view: both converted
            got.append(ch.process(block.astype(np.float64) if i % 3 else block, layout))
    got = np.concatenate(got, axis=1 if layout == "planar" else 0)
    np.testing.assert_array_equal(got if layout == "planar" else got.T, want)
    np.testing.assert_array_equal([ch.channel(c).getDelay() for c in range(channels)], [f.getDelay() for f in lone])


def test_channel_handles_and_counts_follow_the_library():
    ch = mivora.IirChannels(40)
    assert ch.channels == ch.getChannels() == mivora.IirChannels.maxChannels == 16
    ch.channel(99).setCoefHPF(3, 80.0, FS)  # clamped to the last channel
    handle = mivora.IirChannels(2).channel(1)  # keeps its parent alive
    handle.setCoefHPF(4, 80.0, FS)
    assert (ch.channel(15).getOrder(), handle.getOrder()) == (3, 4)
    ch.setChannels(-3)
    assert ch.channels == 0 and ch.process(np.zeros((0, 4), np.float32)).shape == (0, 4)


X = np.ones((2, 8), np.float32)
READ_ONLY = np.broadcast_to(X, X.shape)
BAD_CALLS = [
    (lambda ch: ch.process(np.ones(8, np.float32)), ValueError, "2-D"),
    (lambda ch: ch.process(np.ones((3, 8), np.float32)), ValueError, "3 channels"),
    (lambda ch: ch.process(X, layout="interleaved"), ValueError, "8 channels"),
    (lambda ch: ch.process(X, layout="rows"), ValueError, "layout"),
    (lambda ch: ch.process(np.ones((2, 8), np.int16)), TypeError, "float32 or float64"),
    (lambda ch: ch.process_inplace(X.astype(np.float64)), TypeError, "float32"),
    (lambda ch: ch.process_inplace(np.ones((2, 16), np.float32)[:, ::2]), ValueError, "contiguous"),
    (lambda ch: ch.process_inplace(READ_ONLY), ValueError, "read-only"),
]


@pytest.mark.parametrize("call, error, message", BAD_CALLS)
def test_bad_arrays_raise_clear_errors(call, error, message):
    ch = mivora.IirChannels(2)
    ch.channel(0).setCoefPDFPQ(1000.0, FS, 6.0, 1.0)
    ch.process(X)
    before = ch.channel(0).getDelay().copy()
    with pytest.raises(error, match=message):
        call(ch)
    np.testing.assert_array_equal(ch.channel(0).getDelay(), before)
