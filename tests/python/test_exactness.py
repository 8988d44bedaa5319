"""process() gives the C++ library's bits: the same as the mivora tool, in any
blocking, for any layout of the input; each IirChannels row gives a lone
IirProcess's bits."""
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
DESIGNS = [d for d, _ in TOOL_DESIGNS]


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


@pytest.mark.parametrize("design", DESIGNS)
@pytest.mark.parametrize("cut", [0, 1, 1000, 3000])
def test_every_form_and_blocking_gives_the_same_bits(design, cut):
    whole = designed(design).process(SIGNAL)
    f, strided = designed(design), np.repeat(SIGNAL, 2)[::2]  # SIGNAL again, as a strided view
    parts = [f.process(strided[:cut]), f.process(SIGNAL[cut:].astype(np.float64))]
    np.testing.assert_array_equal(np.concatenate(parts), whole)

    g, buf, out = designed(design), SIGNAL.copy(), np.empty_like(SIGNAL)
    g.process_inplace(buf[:cut])
    g.doProcess(buf[cut:], out[cut:])
    out[:cut] = buf[:cut]
    np.testing.assert_array_equal(out, whole)


SPLITS = [0, 0, 1, 257, 258, 900, 1001]


@pytest.mark.parametrize("channels, layout", [(1, "planar"), (3, "interleaved"), (8, "planar"), (16, "interleaved")])
def test_each_channel_row_is_a_lone_filter_in_any_blocking(channels, layout):
    x = np.random.default_rng(channels).uniform(-1, 1, (channels, 1001)).astype(np.float32)
    x[0, :3] = [-0.0, 1e-42, -1e-40]
    x[-1, 700] = np.nan if channels > 2 else x[-1, 700]
    lone, ch = [designed(DESIGNS[c % 4]) for c in range(channels)], mivora.IirChannels(channels)
    for c in range(channels):
        DESIGNS[c % 4](ch.channel(c))
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


def test_state_and_coef_follow_the_library_convention():
    f = designed(lambda f: f.setCoefLPF(3, 2000.0, FS))
    y = f.process(SIGNAL[:10])
    # section 0 saw the last input, the first-order section (last) gave the last output
    np.testing.assert_array_equal(f.state()[[0, -1], [0, 2]].astype(np.float32), [SIGNAL[9], y[9]])
    np.testing.assert_array_equal(f.coef(), f.sos()[:, [0, 1, 2, 4, 5]] * [1, 1, 1, -1, -1])
    np.testing.assert_array_equal(f.getCoef(), np.concatenate([f.coef()[0], f.coef()[1, [0, 1, 3]]]))
