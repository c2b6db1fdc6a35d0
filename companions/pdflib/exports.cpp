// The exported functions, one for each distribution of the contract.

#include "companions/pdflib/answer.h"

using DistLib::Answer;

int16_t pdfNormal(int16_t request, int16_t reserved, double mean, double standard_deviation,
                  double x, double* results, int16_t* status, void*) {
  return Answer(DistLib::kNormal, {mean, standard_deviation},
                {request, reserved, x, results, status});
}

int16_t pdfStudent(int16_t request, int16_t reserved, double df, double x, double* results,
                   int16_t* status, void*) {
  return Answer(DistLib::kStudent, {df}, {request, reserved, x, results, status});
}

int16_t pdfChisq(int16_t request, int16_t reserved, double df, double x, double* results,
                 int16_t* status, void*) {
  return Answer(DistLib::kChiSquare, {df}, {request, reserved, x, results, status});
}

int16_t pdfF(int16_t request, int16_t reserved, double df1, double df2, double x, double* results,
             int16_t* status, void*) {
  return Answer(DistLib::kF, {df1, df2}, {request, reserved, x, results, status});
}

int16_t pdfBinomial(int16_t request, int16_t reserved, int32_t n, double p, double x,
                    double* results, int16_t* status, void*) {
  return Answer(DistLib::kBinomial, {static_cast<double>(n), p},
                {request, reserved, x, results, status});
}
