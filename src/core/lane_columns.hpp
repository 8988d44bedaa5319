// Rows of doubles to lane vectors and back, one lane at a time: the
// loadColumns / storeColumns of lane types (lanes_*.hpp) that have no
// faster transposition of their own.
#ifndef MIVORA_LANE_COLUMNS_HPP
#define MIVORA_LANE_COLUMNS_HPP

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// cols[i], lane l = rows[l][i].
template <class L, int N>
void columnsOfRows(const double* const* rows, L (&cols)[N]) noexcept {
    for (int i = 0; i < N; ++i) cols[i] = L::generate([&](int l) { return rows[l][i]; });
}

// rows[l][i] = cols[i], lane l.
template <class L, int N>
void rowsOfColumns(double* const* rows, const L (&cols)[N]) noexcept {
    alignas(64) double t[N][L::width];
    for (int i = 0; i < N; ++i) cols[i].store(t[i]);
    for (int l = 0; l < L::width; ++l)
        for (int i = 0; i < N; ++i) rows[l][i] = t[i][l];
}

}  // namespace
}  // namespace Mivora::detail

#endif
