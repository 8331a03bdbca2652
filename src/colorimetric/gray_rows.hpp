// Row functions of the gray conversions.
//
// A colour-to-gray row function converts pixels [0, k) of a row for some k <= n
// that is a multiple of its block and returns k; n is the row's grouped width
// (the pixels computed in the group form) and the scalar kernel continues the
// row from k. Weights are the 8u fixed-point q values for 8u rows, floats for
// 16u, 16s and 32f rows, doubles for 64f rows.
#pragma once

#include <cstdint>

namespace tpx::gray {

template <class T> struct WeightOf { using type = float; };
template <> struct WeightOf<uint8_t> { using type = uint16_t; };
template <> struct WeightOf<double> { using type = double; };
template <class T> using Weight = typename WeightOf<T>::type;

template <class T>
using ColorRow = int (*)(const T* src, T* dst, int n, const Weight<T>* w);

// SIMD rows, one instantiation per element type and channel count (3 or 4).
template <class T, int Ch> int colorRowAvx2(const T* src, T* dst, int n, const Weight<T>* w);
template <class T, int Ch> int colorRowAvx512(const T* src, T* dst, int n, const Weight<T>* w);

// Gray to colour: every pixel of the row gets the gray value in its three colour
// channels and, for Ch == 4, `alpha` in the fourth. Returns the pixels done.
template <class T>
using ExpandRow = int (*)(const T* src, T* dst, int n, T alpha);
template <class T, int Ch> int expandRowAvx2(const T* src, T* dst, int n, T alpha);
template <class T, int Ch> int expandRowAvx512(const T* src, T* dst, int n, T alpha);

}  // namespace tpx::gray
