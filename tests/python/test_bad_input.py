"""Wrong arrays and arguments raise a clear TypeError or ValueError; values the
library accepts behave as in C++ (no exception, non-finite results)."""
import ast
import pathlib

import numpy as np
import pytest

import mivora

F32 = np.zeros(8, np.float32)
READ_ONLY = np.zeros(8, np.float32)
READ_ONLY.flags.writeable = False

BAD_CALLS = [
    (lambda f: f.process(np.zeros(8, np.int16)), TypeError, "float32 or float64"),
    (lambda f: f.process(np.zeros(8, np.complex64)), TypeError, "float32 or float64"),
    (lambda f: f.process(np.zeros((2, 8), np.float32)), ValueError, "1-D"),
    (lambda f: f.process("abc"), TypeError, ""),
    (lambda f: f.process_inplace(np.zeros(8)), TypeError, "float32"),
    (lambda f: f.process_inplace(np.zeros(8, ">f4")), TypeError, "float32"),
    (lambda f: f.process_inplace([0.0, 1.0]), TypeError, "ndarray"),
    (lambda f: f.process_inplace(np.zeros(16, np.float32)[::2]), ValueError, "contiguous"),
    (lambda f: f.process_inplace(READ_ONLY), ValueError, "read-only"),
    (lambda f: f.doProcess(F32, np.zeros(4, np.float32)), ValueError, "exceeds"),
    (lambda f: f.doProcess(F32, F32.copy(), 9), ValueError, "exceeds"),
    (lambda f: f.doProcess(F32, F32.copy(), -1), TypeError, ""),
    (lambda f: f.doProcess(F32[1:], F32[:-1]), ValueError, "overlap"),
    (lambda f: f.doProcess(F32, READ_ONLY), ValueError, "read-only"),
    (lambda f: f.setCoefHPF(2**40, 1000.0, 48000.0), TypeError, ""),
    (lambda f: f.setCoefLOWS(1000.0, 3.0, 48000.0, 2**20), TypeError, ""),
    (lambda f: f.setCoefPDFPQ("1000", 48000.0, 6.0, 1.0), TypeError, ""),
    (lambda f: f.power([[1.0], ["x"]], 48000.0), (TypeError, ValueError), ""),
]


@pytest.mark.parametrize("call, error, message", BAD_CALLS)
def test_bad_arguments_raise_clear_errors(call, error, message):
    f = mivora.IirProcess()
    f.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0)
    before = f.getDelay().copy()
    with pytest.raises(error, match=message):
        call(f)
    np.testing.assert_array_equal(f.getDelay(), before)


def test_meaningless_values_give_non_finite_results_as_in_cpp():
    f = mivora.IirProcess()
    f.setCoefPDFPQ(1000.0, 0.0, 6.0, 1.0)  # fs = 0
    assert np.isnan(f.coef()).any()
    assert np.isnan(f.process(np.ones(4, np.float32))).all()
    f.setCoefBPF(7, 500.0, 2000.0, 48000.0)  # clamped to the largest prototype order
    assert f.getOrder() == 2 * mivora.IirProcess.maxProtoOrder
    f.setOrder(0)
    np.testing.assert_array_equal(f.sos(), [[1, 0, 0, 1, 0, 0]])
    np.testing.assert_array_equal(f.process(F32 + 0.25), F32 + 0.25)


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
