/* Pdflib8_x64.DLL: properties of probability distributions, one function per distribution, callable
 * from C and from every language that calls C.
 *
 * Each function takes
 *
 * - request: which property, PDFLIB_MOMENTS to PDFLIB_UPPER_QUANTILE.
 * - reserved: 0.
 * - The distribution's parameters, described at each function.
 * - x: the value for PDFLIB_DENSITY, PDFLIB_CUMULATIVE and PDFLIB_UPPER_TAIL, the probability for
 *   PDFLIB_QUANTILE and PDFLIB_UPPER_QUANTILE; not read for PDFLIB_MOMENTS.
 * - results: room for 6 doubles. PDFLIB_MOMENTS writes the moments in the order of PDFLIB_MEAN and
 *   so on, every other request its value to results[0] and nothing else.
 * - status: room for 6 words. PDFLIB_MOMENTS writes one word per moment: 0, or
 *   PDFLIB_NO_SUCH_MOMENT when it does not exist, or overflows a double, or underflows and loses
 *   digits; its result is a not-a-number then. Other requests write nothing, and it may be null.
 * - further: reserved for what later versions may give. It may be null, nothing is written to it.
 *
 * It returns a code: PDFLIB_OK, or another of those below, with nothing written then.
 *
 * Upper tails are computed as tails, right to the last digits where 1 minus the cumulative
 * probability has none left. Values outside the distribution's support and probabilities outside
 * 0..1 are outside the domain, as is a not-a-number or an infinity anywhere. The kurtosis is the
 * plain fourth standardised moment, 3 for a normal distribution.
 *
 * The quantile of a discrete distribution is the smallest value whose cumulative probability, as
 * PDFLIB_CUMULATIVE gives it, reaches the probability; its upper quantile the smallest value whose
 * upper tail, as PDFLIB_UPPER_TAIL gives it, does not exceed it. So the quantile of a value's
 * cumulative probability is that value again. The discrete mean is the mean, as PDFLIB_MEAN gives
 * it, rounded to the next whole number, halves upwards; a continuous distribution has none.
 *
 * Five functions have a distribution of their own. The others at the end serve the whole list of
 * distributions: they find one by name, describe it, and evaluate arrays in one call.
 *
 * The functions may be called from any thread, in any floating-point mode, which they leave as it
 * was. */
#ifndef PDFLIB_H
#define PDFLIB_H

#include <stdint.h>

#ifdef _WIN32
#ifdef PDFLIB_BUILD
#define PDFLIB_FUNCTION __declspec(dllexport)
#else
#define PDFLIB_FUNCTION
#endif
#else
#define PDFLIB_FUNCTION __attribute__((visibility("default")))
#endif

enum {
  PDFLIB_MOMENTS = 1,
  PDFLIB_DENSITY = 2, /* of a discrete distribution: the probability of x itself */
  PDFLIB_CUMULATIVE = 3,
  PDFLIB_QUANTILE = 4,
  PDFLIB_UPPER_TAIL = 6, /* the probability of more than x */
  PDFLIB_UPPER_QUANTILE = 7,
  PDFLIB_LOG_DENSITY = 8 /* pdfEvaluate alone knows it */
};

enum {
  PDFLIB_MEAN = 0,
  PDFLIB_VARIANCE = 1,
  PDFLIB_SKEWNESS = 2,
  PDFLIB_KURTOSIS = 3,
  PDFLIB_MODE = 4, /* where the density grows without bound at 0, that is the mode */
  PDFLIB_DISCRETE_MEAN = 5,
  PDFLIB_MOMENT_COUNT = 6
};

enum { PDFLIB_NO_SUCH_MOMENT = 1 };

enum {
  PDFLIB_OK = 0,
  PDFLIB_UNKNOWN_REQUEST = 1, /* or the reserved word is not 0 */
  PDFLIB_NULL_POINTER = 2,
  PDFLIB_OUTSIDE_DOMAIN = 3, /* a parameter, the value or the probability */
  PDFLIB_NO_VALUE = 4,       /* infinite, beyond the doubles, or the computation did not converge */
  PDFLIB_NO_SUCH_DISTRIBUTION = 5,
  PDFLIB_WRONG_COUNT = 6 /* too many parameters, or too few, or a negative count */
};

/* NOLINTBEGIN(modernize-use-using): programs in C read this too. */

/* The values that a parameter may have. */
typedef struct pdfParameter {
  const char* name;
  const char* domain; /* for people: "must be greater than 0" */
  double low;         /* an infinite end bounds nothing */
  double high;
  int16_t with_low; /* 1: the end itself is a value */
  int16_t with_high;
  int16_t whole;       /* 1: only whole numbers are */
  int16_t has_default; /* 1: it may be left out; those with defaults are the last */
  double by_default;
} pdfParameter;

/* A distribution as data; texts are UTF-8. */
typedef struct pdfDescription {
  const char* name;
  const char* other_names; /* divided by ", " */
  const pdfParameter* parameters;
  int32_t parameter_count;
  int32_t is_discrete;
  const char* support;
  const char* formula; /* of the cumulative probability or the density */
  const char* source;
} pdfDescription;

/* NOLINTEND(modernize-use-using) */

#ifdef __cplusplus
extern "C" {
#endif

/* The normal distribution; the standard deviation is greater than 0. */
PDFLIB_FUNCTION int16_t pdfNormal(int16_t request, int16_t reserved, double mean,
                                  double standard_deviation, double x, double* results,
                                  int16_t* status, void* further);
/* Student's t distribution; df is greater than 0 and at most 1e10 and need not be whole, which
 * holds of those below as well. */
PDFLIB_FUNCTION int16_t pdfStudent(int16_t request, int16_t reserved, double df, double x,
                                   double* results, int16_t* status, void* further);
/* The chi-square distribution. */
PDFLIB_FUNCTION int16_t pdfChisq(int16_t request, int16_t reserved, double df, double x,
                                 double* results, int16_t* status, void* further);
/* The F distribution, by the degrees of freedom of its numerator and its denominator. */
PDFLIB_FUNCTION int16_t pdfF(int16_t request, int16_t reserved, double df1, double df2, double x,
                             double* results, int16_t* status, void* further);
/* The binomial distribution: successes in n trials, n from 0, each of probability p in 0..1.
 * Between whole numbers the probability of x is 0 and the cumulative probability that of the number
 * below. */
PDFLIB_FUNCTION int16_t pdfBinomial(int16_t request, int16_t reserved, int32_t n, double p,
                                    double x, double* results, int16_t* status, void* further);

/* The number of distributions in the list. */
PDFLIB_FUNCTION int32_t pdfCount(void);
/* The place in the list, from 0, of the distribution with this name or other name; -1 if there is
 * none. Letter case, blanks, hyphens and underscores do not matter. Places may change from one
 * version of the library to the next, names do not. */
PDFLIB_FUNCTION int32_t pdfFind(const char* name);
/* The description of the distribution at a place, which lasts as long as the library is loaded;
 * null if there is none. */
PDFLIB_FUNCTION const pdfDescription* pdfDescribe(int32_t distribution);
/* What is wrong with the parameters, as a text for people such as "shape must be greater than 0, is
 * -2"; empty if nothing is. At most `room` bytes are written, the last of them 0. */
PDFLIB_FUNCTION int16_t pdfProblem(int32_t distribution, const double* parameters,
                                   int32_t parameter_count, char* text, int32_t room);
/* The request for each of `count` values or probabilities x, into results. A value for which there
 * is none becomes a not-a-number, with its code in status, which may be null. Parameters at the end
 * that have defaults may be left out. Returns a code other than PDFLIB_OK, with nothing written, if
 * the distribution, the request, a parameter or a count is at fault. x and results may be the same
 * array. */
PDFLIB_FUNCTION int16_t pdfEvaluate(int32_t distribution, int16_t request, const double* parameters,
                                    int32_t parameter_count, const double* x, double* results,
                                    int16_t* status, int64_t count);
/* The moments, as by the request PDFLIB_MOMENTS. */
PDFLIB_FUNCTION int16_t pdfMoments(int32_t distribution, const double* parameters,
                                   int32_t parameter_count, double* results, int16_t* status);
/* `count` random values; the same for the same seed. One beyond the doubles becomes a not-a-number.
 */
PDFLIB_FUNCTION int16_t pdfRandom(int32_t distribution, const double* parameters,
                                  int32_t parameter_count, uint32_t seed, double* results,
                                  int64_t count);

#ifdef __cplusplus
}
#endif

#endif
