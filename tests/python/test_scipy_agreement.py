"""IirProcess against scipy.signal: the same designs, responses and outputs."""
import numpy as np
import pytest
from scipy import signal

import mivora

FS = 48000.0

# (design on an IirProcess, the same filter from scipy or None); odd orders and shelves included.
DESIGNS = [
    (lambda f: f.setCoefLPF(3, 3000.0, FS), lambda: signal.butter(3, 3000.0, "low", fs=FS, output="sos")),
    (lambda f: f.setCoefHPF(4, 200.0, FS), lambda: signal.butter(4, 200.0, "high", fs=FS, output="sos")),
    (lambda f: f.setCoefLPFChev(5, 8000.0, 0.5, FS), lambda: signal.cheby1(5, 0.5, 8000.0, "low", fs=FS, output="sos")),
    (lambda f: f.setCoefHPFChev(4, 1000.0, 1.0, FS), lambda: signal.cheby1(4, 1.0, 1000.0, "high", fs=FS, output="sos")),
    (lambda f: f.setCoefLPFIChev(4, 6000.0, 360.0, FS), lambda: signal.cheby2(4, 60.0, 6000.0, "low", fs=FS, output="sos")),
    (lambda f: f.setCoefHPFIChev(3, 500.0, 0.0, FS), lambda: signal.cheby2(3, 96.0, 500.0, "high", fs=FS, output="sos")),
    (lambda f: f.setCoefBPF(2, 500.0, 2000.0, FS), lambda: signal.butter(2, [500.0, 2000.0], "bandpass", fs=FS, output="sos")),
    (lambda f: f.setCoefBEF(1, 900.0, 1100.0, FS), lambda: signal.butter(1, [900.0, 1100.0], "bandstop", fs=FS, output="sos")),
    (lambda f: f.setCoefBPFChev(2, 300.0, 3000.0, 0.5, FS), lambda: signal.cheby1(2, 0.5, [300.0, 3000.0], "bandpass", fs=FS, output="sos")),
    (lambda f: f.setCoefBEFChev(2, 4000.0, 9000.0, 1.0, FS), lambda: signal.cheby1(2, 1.0, [4000.0, 9000.0], "bandstop", fs=FS, output="sos")),
    (lambda f: f.setCoefBPFIChev(2, 200.0, 12000.0, 400.0, FS), lambda: signal.cheby2(2, 56.0, [200.0, 12000.0], "bandpass", fs=FS, output="sos")),
    (lambda f: f.setCoefBEFIChev(2, 1000.0, 3000.0, 560.0, FS), lambda: signal.cheby2(2, 40.0, [1000.0, 3000.0], "bandstop", fs=FS, output="sos")),
    (lambda f: f.setCoefPDFPQ(1000.0, FS, -9.0, 2.0), None),
    (lambda f: f.setCoefLOWS_2A(300.0, 6.0, FS), None),
    (lambda f: f.setCoefHiShelf_C(FS, 5000.0, 4.0, 0.5, 0.0), None),
    (lambda f: f.setDcfHPF(20.0, FS), None),
    (lambda f: f.setAPF2nd(2000.0, FS), None),
]


def response_db(sos, freqs):
    _, h = signal.sosfreqz(sos, worN=freqs, fs=FS)
    return 20.0 * np.log10(np.abs(h))


@pytest.mark.parametrize("design, reference", DESIGNS)
def test_design_queries_and_process_agree_with_scipy(design, reference):
    f = mivora.IirProcess()
    design(f)
    sos = f.sos()
    if reference:  # the design itself, over scipy's pass band
        freqs = np.geomspace(10.0, 23990.0, 2000)
        want = response_db(reference(), freqs)
        passband = want > -3.5
        assert passband.sum() > 50
        np.testing.assert_allclose(response_db(sos, freqs)[passband], want[passband], rtol=0, atol=1e-9)

    # power() and phase() read as sosfreqz of sos(), away from the transmission zeros.
    freqs = np.linspace(30.0, 23900.0, 500)
    _, h = signal.sosfreqz(sos, worN=freqs, fs=FS)
    audible = np.abs(h) > 1e-4
    np.testing.assert_allclose(f.power(freqs, FS)[audible], 20 * np.log10(np.abs(h[audible])), atol=1e-8)
    # phase() leaves the first-order section (the last row) out, as documented.
    second_order = sos[:-1] if f.getOddOrder() else sos
    want = np.angle(signal.sosfreqz(second_order, worN=freqs, fs=FS)[1]) if len(second_order) else 0.0
    wrapped = np.angle(np.exp(1j * (f.phase(freqs, FS) - want)))
    np.testing.assert_allclose(wrapped[audible], 0.0, atol=1e-9)
    assert isinstance(f.power(1000.0, FS), float)

    # process() is sosfilt within float32 rounding.
    x = np.random.default_rng(7).uniform(-1.0, 1.0, 4000).astype(np.float32)
    want = signal.sosfilt(sos, x.astype(np.float64))
    got = f.process(x)
    assert got.dtype == np.float32
    np.testing.assert_allclose(got, want, rtol=2.0**-23, atol=1e-6 * np.abs(want).max())
