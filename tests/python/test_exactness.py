"""process() gives the C++ library's bits: the same as the mivora tool, in any
blocking, for any layout of the input."""
import os
import subprocess

import numpy as np
import pytest

import mivora

FS = 48000.0
SIGNAL = np.random.default_rng(3).uniform(-0.9, 0.9, 3001).astype(np.float32)

# (design on an IirProcess, the same design on the tool's command line)
TOOL_DESIGNS = [
    (lambda f: f.setCoefPDFPQ(1000.0, FS, 6.0, 0.7), "peak --freq 1000 --gain 6 --q 0.7"),
    (lambda f: f.setCoefLPFChev(5, 8000.0, 0.5, FS), "lowpass --type cheby --order 5 --freq 8000 --ripple 0.5"),
    (lambda f: f.setCoefBEFIChev(2, 700.0, 3000.0, 360.0, FS), "bandstop --type icheby --order 2 --low 700 --high 3000 --stop-level 360"),
    (lambda f: f.setCoefHIGS_PM_2B(2500.0, -5.0, FS), "highshelf --order 2 --variant B --damping 2 --freq 2500 --gain -5"),
]


def designed(call):
    f = mivora.IirProcess()
    call(f)
    return f


@pytest.mark.parametrize("design, words", TOOL_DESIGNS)
def test_process_is_bit_identical_to_the_tool(design, words, tmp_path):
    tool = os.environ.get("MIVORA_TOOL")
    sf = pytest.importorskip("soundfile")
    if not tool:
        pytest.skip("MIVORA_TOOL (the built mivora tool) not set")
    sf.write(tmp_path / "in.wav", SIGNAL, int(FS), subtype="FLOAT")
    subprocess.run([tool, "filter", *words.split(), "--in", str(tmp_path / "in.wav"),
                    "--out", str(tmp_path / "out.wav"), "--float"], check=True, capture_output=True)
    want, _ = sf.read(tmp_path / "out.wav", dtype="float32")
    np.testing.assert_array_equal(designed(design).process(SIGNAL), want)


@pytest.mark.parametrize("design", [d for d, _ in TOOL_DESIGNS])
@pytest.mark.parametrize("cut", [0, 1, 1000, 3000])
def test_every_form_and_blocking_gives_the_same_bits(design, cut):
    whole = designed(design).process(SIGNAL)
    f = designed(design)
    parts = [f.process(SIGNAL[:cut]), f.process(SIGNAL[cut:].astype(np.float64))]
    np.testing.assert_array_equal(np.concatenate(parts), whole)

    g, spaced = designed(design), np.zeros(2 * SIGNAL.size, np.float32)
    spaced[::2] = SIGNAL
    np.testing.assert_array_equal(g.process(spaced[::2]), whole)  # strided input

    h, buf, out = designed(design), SIGNAL.copy(), np.empty_like(SIGNAL)
    h.process_inplace(buf[:cut])
    h.doProcess(buf[cut:], out[cut:])
    out[:cut] = buf[:cut]
    np.testing.assert_array_equal(out, whole)


def test_state_and_coef_follow_the_library_convention():
    f = designed(lambda f: f.setCoefLPF(3, 2000.0, FS))
    y = f.process(SIGNAL[:10])
    # section 0 saw the last input, the first-order section (last) gave the last output
    np.testing.assert_array_equal(f.state()[[0, -1], [0, 2]].astype(np.float32), [SIGNAL[9], y[9]])
    np.testing.assert_array_equal(f.coef()[:, 3:], -f.sos()[:, 4:])
    np.testing.assert_array_equal(f.coef()[:, :3], f.sos()[:, :3])
    np.testing.assert_array_equal(f.getCoef(), np.concatenate([f.coef()[0], f.coef()[1, [0, 1, 3]]]))
