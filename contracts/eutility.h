/* EUtilityLibrary8_x64.DLL: the test of Kruskal and Wallis for two or more independent groups,
 * callable from C and from every language that calls C.
 *
 * The values of all groups are ranked together from 1 for the smallest; equal values share the mean
 * of their ranks. With n values in all and R_i the rank sum of the n_i values of group i,
 *
 *   H = 12 / (n (n + 1)) * sum of R_i^2 / n_i - 3 (n + 1),
 *
 * and corrected for ties it is H divided by 1 - sum of (t^3 - t) / (n^3 - n) over the groups of t
 * equal values.
 *
 * Each function returns a code and stores a result only with EUTILITY_OK. A list of groups is an
 * array of pointers to their values and an array of their counts. There are two groups or more,
 * each with at least one value, and no value is a not-a-number.
 *
 * The functions may be called from any thread, in any floating-point mode, which they leave as it
 * was. */
#ifndef EUTILITY_H
#define EUTILITY_H

#include <stdint.h>

#ifdef _WIN32
#ifdef EUTILITY_BUILD
#define EUTILITY_FUNCTION __declspec(dllexport)
#else
#define EUTILITY_FUNCTION
#endif
#else
#define EUTILITY_FUNCTION __attribute__((visibility("default")))
#endif

enum {
  EUTILITY_OK = 0,
  EUTILITY_REFUSED = 1,   /* a null pointer, a group without values, fewer than two groups, a value
                             that is not a number, an item or a method that there is not */
  EUTILITY_NO_SPREAD = 2, /* all values are equal, and the statistic is corrected for ties */
  EUTILITY_TOO_MANY = 3,  /* too many arrangements for an exact p-value */
  EUTILITY_NO_MEMORY = 4
};

/* What KWData gives. */
enum {
  KW_STATISTIC = 0,             /* H corrected for ties */
  KW_STATISTIC_UNCORRECTED = 1, /* H */
  KW_DEGREES_OF_FREEDOM = 2,    /* groups less 1 */
  KW_TOTAL = 3,                 /* values of all groups */
  KW_TIES = 4,                  /* groups of two or more equal values */
  KW_TIE_DIVISOR = 5,           /* what H is divided by */
  KW_RANK_SUM = 100             /* 100 + i: rank sum of group i, from 1 */
};

/* How KWpValue computes. */
enum {
  KW_AUTOMATIC = 0,  /* exact where it can be, else by chi-square */
  KW_CHI_SQUARE = 1, /* upper tail of the chi-square distribution at the corrected H */
  KW_EXACT = 2       /* share of the arrangements of the observed ranks, ties included, among the
                        groups that give an H at least as great */
};

/* The exact p-value goes through all arrangements, n! / (n_1! n_2! ...): there may be no more than
 * this many, of no more than KW_EXACT_LARGEST_TOTAL values. (6, 6 and 6 values have 17,153,136.) */
enum { KW_EXACT_MOST_ARRANGEMENTS = 20000000, KW_EXACT_LARGEST_TOTAL = 1000 };

#ifdef __cplusplus
extern "C" {
#endif

EUTILITY_FUNCTION int16_t KWData(int32_t item, int32_t groups, const double* const* values,
                                 const int32_t* counts, double* result);
EUTILITY_FUNCTION int16_t KWpValue(int32_t method, int32_t groups, const double* const* values,
                                   const int32_t* counts, double* p_value);
/* What KW_AUTOMATIC takes for groups of these sizes: KW_CHI_SQUARE or KW_EXACT. 0 for fewer than
 * two groups, or a size below 1. */
EUTILITY_FUNCTION int16_t KWpValueComputationMethod(int32_t groups, const int32_t* counts);

#ifdef __cplusplus
}
#endif

#endif
