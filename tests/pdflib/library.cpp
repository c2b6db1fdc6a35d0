#include "pdflib/library.h"

#include <filesystem>

#include "platform/module.h"

namespace zavrel::tests {
namespace {

template <class Function>
Function* Entry(const char* name, Function*) {
  static const std::optional<Module> library = Module::Load(std::filesystem::absolute(PDFLIB_FILE));
  return library ? AsFunction<Function>(library->FindExport(name)) : nullptr;
}
#define PDFLIB_ENTRY(name) Entry(#name, static_cast<decltype(&name)>(nullptr))

const auto normal = PDFLIB_ENTRY(pdfNormal);
const auto student = PDFLIB_ENTRY(pdfStudent);
const auto chisq = PDFLIB_ENTRY(pdfChisq);
const auto f = PDFLIB_ENTRY(pdfF);
const auto binomial = PDFLIB_ENTRY(pdfBinomial);

}  // namespace

const ListFunctions& List() {
  static const ListFunctions functions = {PDFLIB_ENTRY(pdfCount),    PDFLIB_ENTRY(pdfFind),
                                          PDFLIB_ENTRY(pdfDescribe), PDFLIB_ENTRY(pdfProblem),
                                          PDFLIB_ENTRY(pdfEvaluate), PDFLIB_ENTRY(pdfMoments),
                                          PDFLIB_ENTRY(pdfRandom)};
  return functions;
}

std::int16_t AskRaw(const Distribution& of, int request_code, int reserved_word, double x,
                    double* results, std::int16_t* status) {
  const auto request = static_cast<std::int16_t>(request_code);
  const auto reserved = static_cast<std::int16_t>(reserved_word);
  if (of.name == "normal")
    return normal(request, reserved, of.a, of.b, x, results, status, nullptr);
  if (of.name == "student") return student(request, reserved, of.a, x, results, status, nullptr);
  if (of.name == "chisq") return chisq(request, reserved, of.a, x, results, status, nullptr);
  if (of.name == "f") return f(request, reserved, of.a, of.b, x, results, status, nullptr);
  return binomial(request, reserved, static_cast<std::int32_t>(of.a), of.b, x, results, status,
                  nullptr);
}

Reply Ask(const Distribution& distribution, int request, double x) {
  Reply reply;
  reply.results.fill(kUntouched);
  reply.status.fill(kUntouchedStatus);
  reply.code = AskRaw(distribution, request, 0, x, reply.results.data(), reply.status.data());
  return reply;
}

double Value(const Distribution& distribution, int request, double x) {
  return Ask(distribution, request, x).results[0];
}

}  // namespace zavrel::tests
