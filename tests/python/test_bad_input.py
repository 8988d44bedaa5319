"""Wrong arrays and arguments, to IirProcess and IirChannels, raise a clear
TypeError or ValueError and leave the state as it was; values the library
accepts behave as in C++ (no exception, non-finite results, clamped counts)."""
import ast
import pathlib

import numpy as np
import pytest

import mivora

F32 = np.zeros(8, np.float32)
X = np.ones((2, 8), np.float32)
READ_ONLY = np.broadcast_to(F32, F32.shape)  # read-only views of them
READ_ONLY_2D = np.broadcast_to(X, X.shape)

# Each call gets f, channel 0 of the two channels ch, both designed and past some input.
BAD_CALLS = [
    (lambda f, ch: f.process(np.zeros(8, np.int16)), TypeError, "float32 or float64"),
    (lambda f, ch: f.process(np.zeros((2, 8), np.float32)), ValueError, "1-D"),
    (lambda f, ch: f.process("abc"), TypeError, ""),
    (lambda f, ch: f.process_inplace(np.zeros(8, ">f4")), TypeError, "float32"),
    (lambda f, ch: f.process_inplace([0.0, 1.0]), TypeError, "ndarray"),
    (lambda f, ch: f.process_inplace(np.zeros(16, np.float32)[::2]), ValueError, "contiguous"),
    (lambda f, ch: f.process_inplace(READ_ONLY), ValueError, "read-only"),
    (lambda f, ch: f.doProcess(F32, np.zeros(4, np.float32)), ValueError, "exceeds"),
    (lambda f, ch: f.doProcess(F32, F32.copy(), 9), ValueError, "exceeds"),
    (lambda f, ch: f.doProcess(F32, F32.copy(), -1), TypeError, ""),
    (lambda f, ch: f.doProcess(F32[1:], F32[:-1]), ValueError, "overlap"),
    (lambda f, ch: f.doProcess(F32, READ_ONLY), ValueError, "read-only"),
    # Integers beyond the C++ argument types (int, short) are refused, not wrapped.
    (lambda f, ch: f.setCoefHPF(2**40, 1000.0, 48000.0), TypeError, ""),
    (lambda f, ch: f.setCoefLOWS(1000.0, 3.0, 48000.0, 2**20), TypeError, ""),
    (lambda f, ch: f.power([[1.0], ["x"]], 48000.0), (TypeError, ValueError), ""),
    (lambda f, ch: ch.process(np.ones(8, np.float32)), ValueError, "2-D"),
    (lambda f, ch: ch.process(np.ones((3, 8), np.float32)), ValueError, "3 channels"),
    (lambda f, ch: ch.process(X, layout="interleaved"), ValueError, "8 channels"),
    (lambda f, ch: ch.process(X, layout="rows"), ValueError, "layout"),
    (lambda f, ch: ch.process(np.ones((2, 8), np.int16)), TypeError, "float32 or float64"),
    (lambda f, ch: ch.process_inplace(X.astype(np.float64)), TypeError, "float32"),
    (lambda f, ch: ch.process_inplace(np.ones((2, 16), np.float32)[:, ::2]), ValueError, "contiguous"),
    (lambda f, ch: ch.process_inplace(READ_ONLY_2D), ValueError, "read-only"),
]


@pytest.mark.parametrize("call, error, message", BAD_CALLS)
def test_bad_arguments_raise_clear_errors(call, error, message):
    ch = mivora.IirChannels(2)
    f = ch.channel(0)
    f.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0)
    ch.process(X)
    before = f.getDelay().copy()
    with pytest.raises(error, match=message):
        call(f, ch)
    np.testing.assert_array_equal(f.getDelay(), before)


def test_meaningless_values_give_non_finite_results_as_in_cpp():
    f = mivora.IirProcess()
    f.setCoefPDFPQ(1000.0, 0.0, 6.0, 1.0)  # fs = 0
    assert np.isnan(f.coef()).any()
    assert np.isnan(f.process(np.ones(4, np.float32))).all()
    f.setOrder(0)
    np.testing.assert_array_equal(f.sos(), [[1, 0, 0, 1, 0, 0]])
    np.testing.assert_array_equal(f.process(F32 + 0.25), F32 + 0.25)


def test_channel_counts_are_clamped_and_handles_keep_their_parent():
    ch = mivora.IirChannels(40)
    assert ch.channels == ch.getChannels() == mivora.IirChannels.maxChannels == 16
    ch.channel(99).setCoefHPF(3, 80.0, 48000.0)  # clamped to the last channel
    handle = mivora.IirChannels(2).channel(1)  # keeps its parent alive
    handle.setCoefHPF(4, 80.0, 48000.0)
    assert (ch.channel(15).getOrder(), handle.getOrder()) == (3, 4)
    ch.setChannels(-3)
    assert ch.channels == 0 and ch.process(np.zeros((0, 4), np.float32)).shape == (0, 4)


def test_stubs_and_docstrings_cover_the_module():
    stub = pathlib.Path(mivora.__file__).with_name("_mivora.pyi")
    cls = next(n for n in ast.parse(stub.read_text()).body if isinstance(n, ast.ClassDef))
    stubbed = {n.name for n in cls.body if isinstance(n, ast.FunctionDef)}
    stubbed |= {n.target.id for n in cls.body if isinstance(n, ast.AnnAssign)}
    public = {n for n in dir(mivora.IirProcess) if not n.startswith("_")} | {"__init__"}
    assert stubbed == public
    for name in public - {"maxOrder", "maxProtoOrder", "maxCoefCount"}:
        doc = getattr(mivora.IirProcess, name).__doc__
        assert len(doc.split(")", 1)[-1].strip()) > 20, name
