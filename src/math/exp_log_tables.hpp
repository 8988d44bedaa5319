// Constants and tables of the exp/log family, generated into
// exp_log_tables.cpp by scripts/gen_math_tables.py.
#ifndef MIVORA_EXP_LOG_TABLES_HPP
#define MIVORA_EXP_LOG_TABLES_HPP

#include "double_double.hpp"
#include "wide_float.hpp"

namespace Mivora::math::tables {

// ln2/128 = Hi + Mid + Lo within 2^-130 relative; Hi and Mid have 35
// significant bits, so k * Hi and k * Mid are exact for |k| < 2^18.
extern const double kLn2By128Hi;
extern const double kLn2By128Mid;
extern const double kLn2By128Lo;
extern const double k128ByLn2;    // 128 / ln2, rounded
extern const double k128Log2Of10; // 128 * log2(10), rounded
extern const dd::DD kLn2;         // ln 2, within 2^-106 relative
extern const dd::DD kLn2Split;    // ln 2 = hi + lo within 2^-96, hi of 42 bits
extern const dd::DD kLn10;
extern const dd::DD kInvLn10;     // 1 / ln 10
extern const dd::DD kExp2Table[128];        // 2^(j/128)
extern const double kLogRecip[256];         // r_i ~ 1/(1 + (i+1/2)/256)
extern const dd::DD kLogMinusLogRecip[256]; // -log(r_i); [255] = kLn2Split
extern const double kExpCoef[5];            // 1/n!, n = 2..6
extern const double kLog1pCoef[6];          // (-1)^(n+1)/n, n = 4..9
extern const dd::DD kThird;                 // 1/3
extern const dd::DD kSinhCoefDD[3];         // 1/3!, 1/5!, 1/7!
extern const double kSinhCoef[5];           // 1/9!, ..., 1/17!
extern const wide::Wide kWideLn2;
extern const wide::Wide kWideLn10;
extern const wide::Wide kWideInvLn10;

}  // namespace Mivora::math::tables

#endif
