"""Mivora IIR filters for NumPy and SciPy users.

``IirProcess`` designs its own coefficients (peaking bands, shelves,
Butterworth / Chebyshev / inverse Chebyshev cut and band filters, Q sections,
DC filters, all-pass sections), filters float32 arrays bit-identically to the
C++ library, and reports its power gain and phase at any frequency.
``sos()`` gives its sections in scipy's convention. See help(IirProcess).
"""
from ._mivora import IirProcess, __version__

__all__ = ["IirProcess", "__version__"]
