#!/usr/bin/env python3
"""Design a Mivora filter from Python, set it beside scipy's, filter audio.

    python3 examples/python_scipy_compare.py [--wav IN.wav] [--out DIR]

Designs a 5th-order Chebyshev low-pass (0.5 dB ripple, pass band to 8 kHz),
prints how far its response is from scipy.signal.cheby1's, plots both (with
matplotlib, if installed) to DIR/lowpass.png, and filters IN.wav (or a
generated sweep) to DIR/lowpass.wav (with soundfile, if installed).
"""
import argparse
import pathlib

import numpy as np
from scipy import signal

import mivora

FS = 48000.0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--wav", type=pathlib.Path, help="audio file to filter (default: a sweep)")
    parser.add_argument("--out", type=pathlib.Path, default=pathlib.Path("."), help="output directory")
    args = parser.parse_args()
    args.out.mkdir(parents=True, exist_ok=True)

    lowpass = mivora.IirProcess()
    lowpass.setCoefLPFChev(5, 8000.0, 0.5, FS)  # order, pass-band edge (Hz), ripple (dB), fs
    reference = signal.cheby1(5, 0.5, 8000.0, "low", fs=FS, output="sos")

    freqs = np.geomspace(20.0, 23900.0, 1000)
    ours = lowpass.power(freqs, FS)  # dB, straight from the library
    theirs = 20 * np.log10(np.abs(signal.sosfreqz(reference, worN=freqs, fs=FS)[1]))
    passband = freqs <= 8000.0
    print("sections (scipy rows):\n", lowpass.sos())
    print("largest pass-band difference from scipy: %.2e dB" % np.abs(ours - theirs)[passband].max())

    try:
        import matplotlib
        matplotlib.use("Agg")
        import matplotlib.pyplot as plt
    except ImportError:
        print("matplotlib not installed: no plot")
    else:
        fig, ax = plt.subplots(figsize=(7, 4))
        ax.semilogx(freqs, ours, label="mivora setCoefLPFChev")
        ax.semilogx(freqs, theirs, "--", label="scipy cheby1")
        ax.set(xlabel="Hz", ylabel="dB", ylim=(-100, 5), title="5th-order Chebyshev low-pass, 0.5 dB")
        ax.grid(True, which="both", alpha=0.3)
        ax.legend()
        fig.tight_layout()
        fig.savefig(args.out / "lowpass.png", dpi=100)
        print("plot:", args.out / "lowpass.png")

    try:
        import soundfile
    except ImportError:
        print("soundfile not installed: no audio")
        return
    if args.wav:
        audio, rate = soundfile.read(args.wav, dtype="float32", always_2d=True)
    else:
        rate = int(FS)
        t = np.arange(2 * rate) / rate
        audio = (0.5 * signal.chirp(t, 20.0, t[-1], 20000.0, method="log")).astype(np.float32)[:, None]
    # One filter per channel; the design assumes the file's rate.
    out = np.empty_like(audio)
    for c in range(audio.shape[1]):
        channel = mivora.IirProcess()
        channel.setCoefLPFChev(5, 8000.0, 0.5, float(rate))
        out[:, c] = channel.process(audio[:, c])  # strided column: copied once, as float32
    soundfile.write(args.out / "lowpass.wav", out, rate, subtype="FLOAT")
    print("audio:", args.out / "lowpass.wav")


if __name__ == "__main__":
    main()
