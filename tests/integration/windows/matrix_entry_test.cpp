// Matrices of a macro's through the entry points of the add-in as it ships.
#include <cmath>
#include <utility>

#include "diagnostics/vek_exception.h"
#include "excel/xloper12.h"
#include "integration/entry_point.h"
#include "numbers/error_double.h"
#include "support/macro_array.h"

namespace zavrel::tests {
namespace {

using TwoSeries = std::int32_t(SAFEARRAY**, SAFEARRAY**, double*);
using Association = std::uint32_t(std::int32_t, std::int32_t, std::int32_t, SAFEARRAY**, VARIANT*);
using OneOutput = std::uint32_t(SAFEARRAY**, VARIANT*);
using TwoOutputs = std::uint32_t(SAFEARRAY**, VARIANT*, VARIANT*);
using Binary = VARIANT(SAFEARRAY**, SAFEARRAY**);
using Unary = VARIANT(SAFEARRAY**);

/// The add-in serving a macro, and what it computes of matrices.
struct Matrices {
  ~Matrices() { CloseClean(*engine); }

  const std::unique_ptr<zavhost::Engine> engine = ServingAddIn();
  Association* const covariances = EntryPoint<Association>("CalculateCovarianceMatrixVB");
  Association* const correlations = EntryPoint<Association>("CalculateCorrelationMatrixVB");
  OneOutput* const eigenvalues = EntryPoint<OneOutput>("CalculateEigenvaluesVB");
  OneOutput* const eigenvectors = EntryPoint<OneOutput>("CalculateEigenvectorsVB");
  TwoOutputs* const eigendata = EntryPoint<TwoOutputs>("CalculateEigendataVB");
  OneOutput* const scores = EntryPoint<OneOutput>("CalculatePCAScoresVB");
  Binary* const add = EntryPoint<Binary>("MatrixAddVB");
  Binary* const multiply = EntryPoint<Binary>("MatrixMultiplyVB");
  Unary* const inverse = EntryPoint<Unary>("MatrixInverseVB");
  double (*const determinant)(SAFEARRAY**) = EntryPoint<double(SAFEARRAY**)>("MatrixDeterminantVB");
};

/// The rows of a result, whose lower bounds must be 1, or this for the rows.
DoubleMatrix RowsOf(SAFEARRAY* array, LONG first_row = 1) {
  REQUIRE(array != nullptr);
  REQUIRE(SafeArrayGetDim(array) == 2);
  CHECK(array->cLocks == 0);
  CHECK((array->rgsabound[0].lLbound == 1 && array->rgsabound[1].lLbound == first_row));
  const std::size_t count = array->rgsabound[1].cElements;
  DoubleMatrix rows(count, std::vector<double>(array->rgsabound[0].cElements));
  const auto* next = static_cast<const double*>(array->pvData);
  for (std::size_t column = 0; column < rows[0].size(); ++column)
    for (auto& row : rows) row[column] = *next++;
  return rows;
}
std::vector<double> SeriesOf(SAFEARRAY* array) {
  REQUIRE(array != nullptr);
  REQUIRE(SafeArrayGetDim(array) == 1);
  CHECK(array->rgsabound[0].lLbound == 1);
  const auto* numbers = static_cast<const double*>(array->pvData);
  return {numbers, numbers + array->rgsabound[0].cElements};
}

void CheckNear(const DoubleMatrix& found, const DoubleMatrix& expected) {
  REQUIRE(found.size() == expected.size());
  for (std::size_t row = 0; row < found.size(); ++row) {
    REQUIRE(found[row].size() == expected[row].size());
    for (std::size_t column = 0; column < found[row].size(); ++column)
      CHECK(found[row][column] == doctest::Approx(expected[row][column]).epsilon(1e-14));
  }
}

DoubleMatrix RowsIn(const MacroVariant& result) {
  REQUIRE(result.variant.vt == (VT_ARRAY | VT_R8));
  return RowsOf(result.variant.parray);
}
DoubleMatrix RowsIn(VARIANT result) { return RowsIn(MacroVariant(result)); }

/// An array of doubles that does not note their type.
MacroArray Untyped(const DoubleMatrix& rows) {
  const MacroArray typed(rows);
  MacroArray untyped;
  REQUIRE(SUCCEEDED(SafeArrayAllocDescriptor(2, &untyped.array)));
  untyped.array->cbElements = sizeof(double);
  std::copy_n(typed.array->rgsabound, 2, untyped.array->rgsabound);
  REQUIRE(SUCCEEDED(SafeArrayAllocData(untyped.array)));
  std::copy_n(typed.elements<double>(), rows.size() * rows[0].size(), untyped.elements<double>());
  return untyped;
}

/// A typed array variable passed for a ByRef Variant.
VARIANT ReferenceTo(MacroArray& array, VARTYPE type = VT_R8) {
  return VariantOf(VT_BYREF | VT_ARRAY | type, static_cast<void*>(&array.array));
}

/// The failure number in what a function returned in the place of a matrix.
std::uint32_t FailureIn(const VARIANT& value) {
  REQUIRE(value.vt == VT_ERROR);
  return static_cast<std::uint32_t>(value.scode) & 0xFFFFu;
}

/// A page of memory that cannot be written.
class ReadOnlyPage {
 public:
  ReadOnlyPage() : page_(VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READONLY)) {
    REQUIRE(page_ != nullptr);
  }
  ReadOnlyPage(const ReadOnlyPage&) = delete;
  ReadOnlyPage& operator=(const ReadOnlyPage&) = delete;
  ~ReadOnlyPage() { VirtualFree(page_, 0, MEM_RELEASE); }
  template <class T>
  T* as() const {
    return static_cast<T*>(page_);
  }

 private:
  void* page_;
};

}  // namespace

TEST_CASE("covariance and correlation of a macro's two series") {
  auto engine = ServingAddIn();
  auto* covariance = EntryPoint<TwoSeries>("ZavrelCovarianceVB");
  auto* covariance_p = EntryPoint<TwoSeries>("ZavrelCovariancePVB");
  auto* correlation = EntryPoint<TwoSeries>("ZavrelCorrelationCoeffVB");
  MacroArray x{1, 2, 3, 4, 5}, y{2, 1, 4, 3, 7}, one{1}, other{2}, flat{3, 3, 3, 3, 3};
  const double root = std::sqrt(10 * 21.2);
  const struct {
    TwoSeries* function;
    SAFEARRAY **first, **second;
    double result;  // infinite when there are too few
  } cases[] = {{covariance, x, y, 3},
               {covariance_p, x, y, 2.4},
               {correlation, x, y, 12 / root},
               {covariance_p, one, other, 0},
               {correlation, x, flat, HUGE_VAL},
               {correlation, one, other, HUGE_VAL}};
  double result = 0;
  for (const auto& given : cases) {
    CAPTURE(given.result);
    CHECK(given.function(given.first, given.second, &result) == 0);
    CHECK((given.result == HUGE_VAL ? HasCondition(result, kConditionTooFew)
                                    : result == doctest::Approx(given.result).epsilon(1e-14)));
  }
  result = 77;
  CHECK(covariance(one, other, &result) == 5);
  MacroArray unallocated, whole(VT_I4, {5}), matrix(DoubleMatrix{{1, 2, 3, 4, 5}});
  MacroArray empty(VT_R8, {0}), hollow = MacroArray::Hollow({5});
  SAFEARRAY** const refused[] = {nullptr, one, unallocated, whole, matrix, empty, hollow};
  const ReadOnlyPage read_only;
  for (TwoSeries* function : {covariance, covariance_p, correlation}) {
    for (SAFEARRAY** bad : refused) {
      CHECK(function(x, bad, &result) == 5);
      CHECK(function(bad, x, &result) == 5);
    }
    CHECK(function(empty, empty, &result) == 5);
    CHECK(function(x, y, nullptr) == 5);
    CHECK(function(x, y, read_only.as<double>()) == 5);
  }
  CHECK(result == 77);
  CloseClean(*engine);
}

TEST_CASE("an array that is no matrix is refused by every entry point, for the same reason") {
  const Matrices of;
  const std::string size = "VekArraySizeError|MatrixFromVbArray|",
                    not_two_dimensional = size + "VB array is not 2-dimensional",
                    not_its_size = size + "An array has the wrong size.",
                    not_doubles =
                        "VekInvalidDataType|MatrixFromVbArray|The data are of a type "
                        "that cannot be used here.";
  constexpr ULONG kMost = 0x7FFFFFFF;
  MacroArray unallocated, series{1, 2}, deep(VT_R8, {2, 2, 2}), whole(VT_I4, {2, 2});
  MacroArray variants(VT_VARIANT, {2, 2});  // `Dim r() As Variant`
  // Bounds that promise what is not there.
  MacroArray hollow = MacroArray::Hollow({2, 2}), endless = MacroArray::Hollow({kMost, kMost});
  const std::pair<SAFEARRAY**, std::string> cases[] = {
      {nullptr, not_two_dimensional}, {unallocated, not_two_dimensional},
      {series, not_two_dimensional},  {deep, not_two_dimensional},
      {whole, not_doubles},           {variants, not_doubles},
      {hollow, not_its_size},         {endless, not_its_size}};
  MacroArray good(DoubleMatrix{{2, 1}, {1, 2}});
  MacroVariant result, other;
  for (const auto& [bad, why] : cases) {
    for (const std::uint32_t number :
         {of.covariances(0, 1, 0, bad, result), of.correlations(0, 1, 0, bad, result),
          of.eigenvalues(bad, result), of.eigenvectors(bad, result),
          of.eigendata(bad, result, other), of.scores(bad, result), FailureIn(of.add(good, bad)),
          FailureIn(of.multiply(bad, good)), FailureIn(of.inverse(bad))})
      CHECK(Explained(number) == why);
    CHECK(HasCondition(of.determinant(bad), kConditionNotComputed));
  }
  CHECK((result.variant.vt == VT_EMPTY && other.variant.vt == VT_EMPTY));
  // Without a place for the result nothing is looked at.
  CHECK((of.covariances(0, 1, 0, series, nullptr) == 0 && of.eigenvalues(series, nullptr) == 0));
  CHECK((of.correlations(0, 1, 0, series, nullptr) == 0 && of.scores(series, nullptr) == 0));
  // Without elements there is nothing to compute.
  MacroArray flat = MacroArray::Hollow({0, kMost}), thin = MacroArray::Hollow({kMost, 0});
  CHECK((of.inverse(flat).vt == VT_EMPTY && of.inverse(thin).vt == VT_EMPTY));
  // As a place for a result a hollow array is replaced.
  VARIANT reference = ReferenceTo(hollow);
  CHECK(of.scores(good, &reference) == 0);
  CHECK(RowsOf(hollow.array).size() == 2);
}

TEST_CASE("covariance and correlation matrices of a macro's data") {
  const Matrices of;
  MacroArray data(DoubleMatrix{{1, 2, 5}, {2, 1, 5}, {3, 4, 7}, {4, 3, kMissingValue}});
  MacroVariant result;
  const double third = 1.0 / 3;
  CHECK(of.covariances(0, 1, 1, data, result) == 0);
  CheckNear(RowsIn(result), {{1, 1, 1}, {1, 7 * third, 5 * third}, {1, 5 * third, 4 * third}});
  CHECK(of.covariances(0, -1, 0, data, result) == 0);
  CheckNear({RowsIn(result)[0]}, {{5 * third, 1, 1}});
  CHECK(of.correlations(1, 0, 0, data, result) == 0);
  CheckNear({RowsIn(result)[0]}, {{1, 0.6, std::sqrt(0.75)}});
  MacroArray error(DoubleMatrix{{1, 2}, {2, ErrorCodedNaN(xlerrDiv0)}});
  CHECK(of.correlations(0, 0, 0, error, result) == 0);
  CHECK(ErrorCodeOf(RowsIn(result)[1][0]) == xlerrDiv0);
  // The plain entry points: rows are the variables.
  using Plain = DoubleMatrix(bool, bool, bool, DoubleMatrix);
  const DoubleMatrix variables{{1, 2, 3}, {2, 1, 4}};
  CheckNear(EntryPoint<Plain>("CalculateCovarianceMatrixC")(false, true, false, variables),
            {{1, 1}, {1, 7 * third}});
  CheckNear(EntryPoint<Plain>("CalculateCorrelationMatrixC")(true, true, false, variables),
            {{1, 0.5}, {0.5, 1}});
}

TEST_CASE("a macro's matrix algebra") {
  const Matrices of;
  const DoubleMatrix plain{{4, 7}, {2, 6}};
  MacroArray a = Untyped(plain), b(DoubleMatrix{{1, 2, 3}, {4, 5, 6}}), single(DoubleMatrix{{5}}),
             empty(VT_R8, {0, 0});
  CHECK(RowsIn(of.add(a, b)) == DoubleMatrix{{5, 9}, {6, 11}});
  CHECK(RowsIn(of.multiply(a, b)) == DoubleMatrix{{32, 43, 54}, {26, 34, 42}});
  CheckNear(RowsIn(of.inverse(a)), {{0.6, -0.7}, {-0.2, 0.4}});
  CHECK(RowsIn(of.inverse(single)) == DoubleMatrix{{0.2}});
  CHECK(of.determinant(a) == doctest::Approx(10).epsilon(1e-14));
  CHECK(of.inverse(empty).vt == VT_EMPTY);
  CHECK(of.determinant(empty) == 1);
  SafeArrayLock(a.array);  // somebody else's lock does not hinder reading, and stays
  CHECK(RowsIn(of.add(a, a)) == DoubleMatrix{{8, 14}, {4, 12}});
  CHECK(a.array->cLocks == 1);
  SafeArrayUnlock(a.array);

  CHECK(Explained(FailureIn(of.add(b, a))) ==
        "VekArraySizeError|MatrixAdd|The second matrix has fewer rows or columns than the first.");
  CHECK(Explained(FailureIn(of.multiply(b, a))) ==
        "VekArraySizeError|MatrixMultiply|An array has the wrong size.");
  const std::uint32_t not_square = FailureIn(of.inverse(b));
  CHECK(HasCondition(of.determinant(b), kConditionNotComputed));
  for (const std::uint32_t number : {not_square, not_square + 1}) {
    CHECK(Explained(number).starts_with("VekMatrixNotSquare|"));
    CHECK(Explained(number).ends_with("|Matrix is (2 x 3), not square."));
  }

  using PlainBinary = DoubleMatrix(DoubleMatrix, DoubleMatrix);
  auto* const plain_inverse = EntryPoint<DoubleMatrix(DoubleMatrix)>("MatrixInverseC");
  CHECK(EntryPoint<PlainBinary>("MatrixAddC")(plain, plain) == DoubleMatrix{{8, 14}, {4, 12}});
  CHECK(EntryPoint<PlainBinary>("MatrixMultiplyC")(plain, plain) ==
        DoubleMatrix{{30, 70}, {20, 50}});
  CheckNear(plain_inverse(plain), {{0.6, -0.7}, {-0.2, 0.4}});
  CHECK_THROWS_AS(plain_inverse({{1, 2}}), VekMatrixNotSquare);
  CHECK(EntryPoint<double(DoubleMatrix)>("MatrixDeterminantC")(plain) == doctest::Approx(10));
}

TEST_CASE("a result that no memory holds leaves the arrays as they were") {
  const Matrices of;
  constexpr ULONG kCount = 1'000'000;
  MacroArray tall(VT_R8, {kCount, 1}), wide(VT_R8, {1, kCount});
  for (ULONG i = 0; i < kCount; ++i) tall.elements<double>()[i] = wide.elements<double>()[i] = i;
  CHECK(Explained(FailureIn(of.multiply(tall, wide))).starts_with("VekOutOfMemory|"));
  CHECK((tall.array->cLocks == 0 && wide.array->cLocks == 0));
  CHECK(std::equal(tall.elements<double>(), tall.elements<double>() + kCount,
                   wide.elements<double>()));
  CHECK(wide.elements<double>()[kCount - 1] == kCount - 1);
}

TEST_CASE("a macro's eigen-analysis and principal components") {
  const Matrices of;
  MacroArray matrix(DoubleMatrix{{2, 1}, {1, 2}}), wide(DoubleMatrix{{1, 2, 3}, {4, 5, 6}});
  MacroArray skew(DoubleMatrix{{1, 2, 3}, {2, 1, 0.5}, {3, 0.25, 1}}),
      tiny(DoubleMatrix{{1, 2, 3}, {2, 1, 4}, {-3e-17, 4, 1}}),
      unlike(DoubleMatrix{{0, 1234567.5}, {std::nan(""), 0}});
  MacroVariant values, vectors;
  const auto check_both = [&] {
    REQUIRE(values.variant.vt == (VT_ARRAY | VT_R8));
    CheckNear({SeriesOf(values.variant.parray)}, {{3, 1}});
    DoubleMatrix rows = RowsIn(vectors);
    for (std::size_t column = 0; column < 2; ++column) {
      const double sign = std::copysign(1, rows[0][column]);
      for (auto& row : rows) row[column] *= sign;
    }
    const double half = std::sqrt(0.5);
    CheckNear(rows, {{half, half}, {half, -half}});
  };
  CHECK((of.eigenvalues(matrix, values) == 0 && of.eigenvectors(matrix, vectors) == 0));
  check_both();
  VariantClear(values);
  VariantClear(vectors);
  CHECK(of.eigendata(matrix, values, vectors) == 0);
  check_both();
  CHECK(of.eigendata(matrix, values, nullptr) == 0);
  CHECK(of.eigendata(matrix, nullptr, vectors) == 0);

  MacroArray infinite(DoubleMatrix{{HUGE_VAL, 1}, {1, 2}});
  CHECK(Explained(of.eigenvalues(wide, values)).ends_with("|Matrix is (2 x 3), not square."));
  for (const auto& [number, why] :
       {std::pair{of.eigendata(skew, values, vectors),
                  "VekMatrixNotSymmetric|matrix::eigendata_private|Matrix is symmetric at element "
                  "(3, 2) (0.25 vs 0.5)."},
        {of.eigenvalues(tiny, values),
         "VekMatrixNotSymmetric|matrix::eigendata_private|Matrix is symmetric at element (3, 1) "
         "(-3e-17 vs 3)."},
        {of.eigenvectors(unlike, values),
         "VekMatrixNotSymmetric|matrix::eigendata_private|Matrix is symmetric at element (2, 1) "
         "(nan vs 1.23457e+06)."},
        {of.eigenvalues(infinite, values),
         "VekInvalidDataType|matrix::eigendata_private|Eigenvalues could not be calculated; "
         "matrix had invalid values."},
        {of.scores(infinite, values),
         "VekInvalidDataType|matrix::PrincipalComponentScores|The data have values that are not "
         "finite numbers."}})
    CHECK(Explained(number) == why);
  check_both();  // a failure leaves them as they were

  CHECK(of.scores(wide, vectors) == 0);
  const DoubleMatrix found = RowsIn(vectors);
  REQUIRE((found.size() == 2 && found[0].size() == 2));
  CHECK(std::hypot(found[0][0], found[0][1]) == doctest::Approx(std::sqrt(14)));
  CHECK(std::hypot(found[1][0], found[1][1]) == doctest::Approx(std::sqrt(77)));
  CHECK(found[0][0] * found[1][0] + found[0][1] * found[1][1] == doctest::Approx(32));
}

TEST_CASE("results go into the arrays of a macro that can take them, and nowhere else") {
  const Matrices of;
  MacroArray data(DoubleMatrix{{1, 2, 3}, {4, 5, 6}}), matrix(DoubleMatrix{{2, 1}, {1, 2}});

  // As many rows: the array stays, with the lower bound of its rows, and gets the columns.
  // Otherwise it is replaced, whatever it holds.
  MacroArray fits(VT_R8, {2, 7}), untyped = Untyped({{1, 2, 3}, {4, 5, 6}}), other(VT_R8, {3, 2}),
                                  flat{1, 2}, unallocated, whole(VT_I4, {2, 2}),
                                  dates(VT_DATE, {2, 2}), texts(VT_BSTR, {2, 2});
  texts.elements<BSTR>()[0] = SysAllocString(L"goes");
  const SAFEARRAY* const kept = fits.array;
  const SAFEARRAY* const kept_too = untyped.array;
  for (MacroArray* array : {&fits, &untyped, &other, &flat, &unallocated, &whole, &dates, &texts}) {
    VARIANT reference = ReferenceTo(*array);
    const LONG first_row = array == &fits || array == &untyped ? 0 : 1;
    CHECK(of.scores(data, &reference) == 0);
    CHECK(reference.vt == (VT_BYREF | VT_ARRAY | VT_R8));
    const DoubleMatrix rows = RowsOf(array->array, first_row);
    CHECK((rows.size() == 2 && rows[0].size() == 2));
    VARIANT followed = ReferenceTo(&reference);
    CHECK(of.scores(matrix, &followed) == 0);
    CHECK(std::abs(RowsOf(array->array, first_row)[0][0]) == doctest::Approx(3 * std::sqrt(0.5)));
  }
  CHECK((fits.array == kept && untyped.array == kept_too));
  MacroArray vector;
  VARIANT values = ReferenceTo(vector);
  CHECK(of.eigendata(matrix, &values, nullptr) == 0);
  CHECK(SeriesOf(vector.array)[0] == doctest::Approx(3));
  // What a VARIANT held goes.
  MacroVariant text(L"text");
  CHECK(of.scores(matrix, text) == 0);
  CHECK(RowsIn(text).size() == 2);

  double number = 0.5;
  // Variables of another type, whose code would misread doubles.
  MacroArray integers(VT_I4, {2, 2}), variants(VT_VARIANT, {2, 2}), locked(VT_R8, {2, 2});
  // Texts that the system would look for where nothing is.
  void* const astray = reinterpret_cast<void*>(std::uintptr_t{16});
  MacroArray lost(VT_BSTR, {2, 2});
  void* const texts_at = std::exchange(lost.array->pvData, astray);
  VARIANT refused[] = {VariantOf(VT_BYREF | VT_R8, &number),
                       VariantOf(VT_BYREF | VT_ARRAY | VT_R8, astray),
                       VariantOf(VT_BYREF | VT_ARRAY | VT_R8),
                       VariantOf(VT_BYREF | VT_VARIANT),
                       ReferenceTo(integers, VT_I4),
                       ReferenceTo(variants, VT_VARIANT),
                       VariantOf(VT_ARRAY | VT_R8, astray),
                       ReferenceTo(lost),
                       ReferenceTo(locked),
                       VariantOf(VT_ARRAY | VT_R8, locked.array)};
  VARIANT &reference = refused[0], &to_locked = refused[8], &holds_locked = refused[9];
  const ReadOnlyPage read_only;
  SafeArrayLock(locked.array);
  std::vector<VARIANT*> places{read_only.as<VARIANT>()};
  for (VARIANT& place : refused) places.push_back(&place);
  for (VARIANT* bad : places) {
    CAPTURE(bad->vt);
    const VARTYPE before = bad->vt;
    const char* const why = bad == &to_locked || bad == &holds_locked
                                ? "VekArraySizeError|ReDimVbArray|"
                                : "VekInvalidDataType|ReDimVbArray|";
    CHECK(Explained(of.scores(data, bad)).starts_with(why));
    CHECK(Explained(of.eigendata(matrix, bad, nullptr)).starts_with(why));
    CHECK(bad->vt == before);
  }
  // The one output that cannot be written keeps the other from being.
  MacroVariant vectors;
  CHECK(of.eigendata(matrix, &to_locked, vectors) != 0);
  CHECK(of.eigendata(matrix, &reference, vectors) != 0);
  CHECK(vectors.variant.vt == VT_EMPTY);
  CHECK(locked.array->cLocks == 1);
  SafeArrayUnlock(locked.array);
  lost.array->pvData = texts_at;
  CHECK(number == 0.5);

  // A matrix without elements leaves everything as it is.
  MacroArray empty(VT_R8, {3, 0});
  VARIANT untouched = ReferenceTo(fits);
  CHECK(of.scores(empty, &untouched) == 0);
  CHECK(RowsOf(fits.array, 0).size() == 2);
}

}  // namespace zavrel::tests
