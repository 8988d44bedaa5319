"""Mivora IIR filters for NumPy and SciPy users.

``IirProcess`` designs its own coefficients (peaking bands, shelves,
Butterworth / Chebyshev / inverse Chebyshev cut and band filters, Q sections,
DC filters, all-pass sections), filters float32 arrays bit-identically to the
C++ library, and reports its power gain and phase at any frequency.
``sos()`` gives its sections in scipy's convention. ``IirChannels`` runs up
to 16 of them over the rows of a 2-D array. See help(IirProcess).
"""
from ._mivora import IirChannels, IirProcess, __version__

__all__ = ["IirChannels", "IirProcess", "__version__"]
