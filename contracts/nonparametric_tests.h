/* NonparametricTests8_x64.DLL: the rank sum test of Mann and Whitney for two independent samples
 * and the signed-rank test of Wilcoxon for one sample or for pairs, callable from C and from every
 * language that calls C.
 *
 * Values are ranked from 1 for the smallest; equal values share the mean of their ranks. Two values
 * are equal when their doubles are: differences of decimal fractions that a reader would call equal
 * may differ in their last bit.
 *
 * A p-value is the probability, under the null hypothesis and without ties, of a statistic as far
 * out as the given one:
 *   NPT_LESS       as small or smaller
 *   NPT_GREATER    as great or greater
 *   NPT_TWO_SIDED  twice the smaller of the two, at most 1
 *
 * Exact p-values count the arrangements of the ranks that lie as far out; a statistic between two
 * whole numbers, as ties make one, is between two counts. A statistic within 1e-7 of a multiple of
 * one half counts as that multiple, so that the rounding of a computed rank sum does not cost a
 * whole rank. The normal approximation uses the mean
 * and the variance of the statistic without ties, and a continuity correction of one half. Who
 * wants the variance with ties subtracts the term that the tie correction gives: for Mann-Whitney
 * the variance is n1 n2 / 12 ((n1 + n2 + 1) - term / ((n1 + n2) (n1 + n2 - 1))), for the signed
 * ranks it is n (n + 1) (2 n + 1) / 24 - term / 48.
 *
 * A p-value of arguments that are refused is a not-a-number.
 *
 * The functions may be called from any thread, in any floating-point mode, which they leave as it
 * was. */
#ifndef NONPARAMETRIC_TESTS_H
#define NONPARAMETRIC_TESTS_H

#include <stdint.h>

#ifdef _WIN32
#ifdef NONPARAMETRIC_TESTS_BUILD
#define NPT_FUNCTION __declspec(dllexport)
#else
#define NPT_FUNCTION
#endif
#else
#define NPT_FUNCTION __attribute__((visibility("default")))
#endif

enum { NPT_LESS = -1, NPT_TWO_SIDED = 0, NPT_GREATER = 1 };

enum {
  NPT_OK = 0,
  NPT_REFUSED = 1, /* a null pointer, a count below 1, a value that is not a number */
  NPT_NO_MEMORY = 2
};

/* The largest number of differences whose p-value is exact. */
enum { WSR_EXACT_LARGEST = 1000 };
/* The largest product of the sample sizes whose p-value is exact: 50 and 50, 25 and 100, ... */
enum { MW_EXACT_LARGEST_PRODUCT = 2500 };

/* NOLINTNEXTLINE(modernize-use-using): C has no other way. */
typedef struct NptRankSums {
  double ties;                /* groups of two or more equal values */
  double tie_correction_term; /* sum of t^3 - t over the groups of t equal values */
  double rank_sum_1; /* Mann-Whitney: of sample 1; signed ranks: of the negative differences */
  double rank_sum_2; /* Mann-Whitney: of sample 2; signed ranks: of the positive differences */
} NptRankSums;

#ifdef __cplusplus
extern "C" {
#endif

/* WSR_EXACT_LARGEST. Every probability of so many differences has a normal double, and the rounding
 * of the recurrence stays below 1.2e-13 of the value; 1e-15 is what was seen. */
NPT_FUNCTION int32_t WSRExactPValMaxSample(void);
/* Ranks the absolute differences of the values from the hypothesized median; differences of 0 are
 * dropped. Pairs are tested by passing their differences. Writes the sums unless it returns another
 * code than NPT_OK. */
NPT_FUNCTION int16_t WSRTiesAndSums(const double* values, int32_t count, double hypothesized_median,
                                    NptRankSums* sums);
/* The p-value of the rank sum of the positive differences among n differences other than 0, exact
 * up to WSR_EXACT_LARGEST. n is 1 or more, the statistic between 0 and n (n + 1) / 2. NPT_LESS: the
 * median is less than the hypothesis. */
NPT_FUNCTION double WSRpValue(int32_t n, double positive_rank_sum, int32_t alternative);

/* 1 when MWpValue uses the normal approximation for samples of these sizes, 0 when it is exact or a
 * size is below 1. */
NPT_FUNCTION int16_t MWUsingNormalApproximation(int32_t size_1, int32_t size_2);
/* Ranks the two samples together. Writes the sums unless it returns another code than NPT_OK. */
NPT_FUNCTION int16_t MWTiesAndSums(const double* sample_1, int32_t count_1, const double* sample_2,
                                   int32_t count_2, NptRankSums* sums);
/* The p-value of the rank sum of sample 1. Sizes are 1 or more, the statistic between
 * size_1 (size_1 + 1) / 2 and size_1 size_2 more. NPT_LESS: sample 1 tends to smaller values. */
NPT_FUNCTION double MWpValue(int32_t size_1, int32_t size_2, double rank_sum_1,
                             int32_t alternative);

#ifdef __cplusplus
}
#endif

#endif
