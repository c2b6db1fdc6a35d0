// Matrices of a macro's through the entry points of the add-in as it ships.
#include <cmath>

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
using Determinant = double(SAFEARRAY**);

/// The rows of a result, whose lower bounds must be 1.
DoubleMatrix RowsOf(SAFEARRAY* array) {
  REQUIRE(array != nullptr);
  REQUIRE(SafeArrayGetDim(array) == 2);
  CHECK(array->cLocks == 0);
  CHECK((array->rgsabound[0].lLbound == 1 && array->rgsabound[1].lLbound == 1));
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

/// A typed array variable passed for a ByRef Variant.
VARIANT ReferenceTo(MacroArray& array, VARTYPE type = VT_R8) {
  VARIANT variant{};
  variant.vt = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | type);
  variant.pparray = &array.array;
  return variant;
}

/// The failure number in what a function returned in the place of a matrix.
std::uint32_t FailureIn(const VARIANT& value) {
  REQUIRE(value.vt == VT_ERROR);
  return static_cast<std::uint32_t>(value.scode) & 0xFFFFu;
}

const char* const kNotTwoDimensional =
    "VekArraySizeError|MatrixFromVbArray|VB array is not 2-dimensional";
const char* const kNotItsSize =
    "VekArraySizeError|MatrixFromVbArray|An array does not have the size that is needed here.";
const char* const kNotDoubles =
    "VekInvalidDataType|MatrixFromVbArray|The data are of a type that cannot be used here.";

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

TEST_CASE("covariance and correlation matrices of a macro's data") {
  auto engine = ServingAddIn();
  auto* covariance = EntryPoint<Association>("CalculateCovarianceMatrixVB");
  auto* correlation = EntryPoint<Association>("CalculateCorrelationMatrixVB");
  MacroArray data(DoubleMatrix{{1, 2, 5}, {2, 1, 5}, {3, 4, 7}, {4, 3, kMissingValue}});
  MacroVariant result;
  const double third = 1.0 / 3;
  CHECK(covariance(0, 1, 1, data, result) == 0);
  CheckNear(RowsIn(result), {{1, 1, 1}, {1, 7 * third, 5 * third}, {1, 5 * third, 4 * third}});
  CHECK(covariance(0, -1, 0, data, result) == 0);
  CheckNear({RowsIn(result)[0]}, {{5 * third, 1, 1}});
  CHECK(correlation(1, 0, 0, data, result) == 0);
  CHECK(RowsIn(result)[0][2] == doctest::Approx(std::sqrt(0.75)).epsilon(1e-14));
  CHECK(RowsIn(result)[0][1] == doctest::Approx(0.6));
  MacroArray error(DoubleMatrix{{1, 2}, {2, ErrorCodedNaN(xlerrDiv0)}});
  CHECK(correlation(0, 0, 0, error, result) == 0);
  CHECK(ErrorCodeOf(RowsIn(result)[1][0]) == xlerrDiv0);
  MacroArray series{1, 2, 3};
  for (Association* function : {covariance, correlation}) {
    CHECK(function(0, 1, 0, series, nullptr) == 0);
    const std::uint32_t number = function(0, 1, 0, series, result);
    CHECK(Explained(number) == kNotTwoDimensional);
  }
  CHECK(RowsIn(result).size() == 2);
  // The plain entry points: rows are the variables.
  using Plain = DoubleMatrix(bool, bool, bool, DoubleMatrix);
  const DoubleMatrix variables{{1, 2, 3}, {2, 1, 4}};
  CheckNear(EntryPoint<Plain>("CalculateCovarianceMatrixC")(false, true, false, variables),
            {{1, 1}, {1, 7 * third}});
  CHECK(EntryPoint<Plain>("CalculateCorrelationMatrixC")(true, true, false, variables)[0][1] ==
        doctest::Approx(0.5));
  CloseClean(*engine);
}

TEST_CASE("a macro's matrix algebra") {
  auto engine = ServingAddIn();
  auto* add = EntryPoint<Binary>("MatrixAddVB");
  auto* multiply = EntryPoint<Binary>("MatrixMultiplyVB");
  auto* inverse = EntryPoint<Unary>("MatrixInverseVB");
  auto* determinant = EntryPoint<Determinant>("MatrixDeterminantVB");
  const DoubleMatrix plain{{4, 7}, {2, 6}};
  MacroArray a(plain), b(DoubleMatrix{{1, 2, 3}, {4, 5, 6}}), series{1, 2},
      single(DoubleMatrix{{5}});
  CHECK(RowsIn(add(a, a)) == DoubleMatrix{{8, 14}, {4, 12}});
  CHECK(RowsIn(add(a, b)) == DoubleMatrix{{5, 9}, {6, 11}});
  CHECK(RowsIn(multiply(a, b)) == DoubleMatrix{{32, 43, 54}, {26, 34, 42}});
  CHECK(RowsIn(inverse(a))[0][0] == doctest::Approx(0.6).epsilon(1e-14));
  CHECK(RowsIn(inverse(single)) == DoubleMatrix{{0.2}});
  CHECK(determinant(a) == doctest::Approx(10).epsilon(1e-14));

  MacroArray unallocated, whole(VT_I4, {2, 2}), deep(VT_R8, {2, 2, 2}), empty(VT_R8, {0, 0});
  MacroArray variants(VT_VARIANT, {2, 2});  // `Dim r() As Variant`
  const std::pair<VARIANT, std::string> failures[] = {
      {add(b, a),
       "VekArraySizeError|MatrixAdd|The second matrix has fewer rows or columns than the first."},
      {multiply(b, a),
       "VekArraySizeError|MatrixMultiply|An array does not have the size that is needed here."},
      {add(a, series), kNotTwoDimensional},
      {multiply(nullptr, a), kNotTwoDimensional},
      {inverse(series), kNotTwoDimensional},
      {inverse(unallocated), kNotTwoDimensional},
      {inverse(deep), kNotTwoDimensional},
      {inverse(whole), kNotDoubles},
      {inverse(variants), kNotDoubles}};
  for (const auto& [result, why] : failures) CHECK(Explained(FailureIn(result)) == why);
  const std::uint32_t not_square = FailureIn(inverse(b));
  CHECK(HasCondition(determinant(b), kConditionNotComputed));
  for (const std::uint32_t number : {not_square, not_square + 1}) {
    CHECK(Explained(number).starts_with("VekMatrixNotSquare|"));
    CHECK(Explained(number).ends_with("|Matrix is (2 x 3), not square."));
  }
  CHECK(inverse(empty).vt == VT_EMPTY);
  CHECK(determinant(empty) == 1);
  SafeArrayLock(a.array);  // somebody else's lock does not hinder reading, and stays
  CHECK(RowsIn(add(a, a))[0][0] == 8);
  CHECK(a.array->cLocks == 1);
  SafeArrayUnlock(a.array);

  CHECK(EntryPoint<DoubleMatrix(DoubleMatrix, DoubleMatrix)>("MatrixAddC")(plain, plain)[1][0] ==
        4);
  CHECK(EntryPoint<DoubleMatrix(DoubleMatrix, DoubleMatrix)>("MatrixMultiplyC")(plain, plain) ==
        DoubleMatrix{{30, 70}, {20, 50}});
  CHECK(EntryPoint<DoubleMatrix(DoubleMatrix)>("MatrixInverseC")(plain)[1][1] ==
        doctest::Approx(0.4));
  CHECK_THROWS_AS(EntryPoint<DoubleMatrix(DoubleMatrix)>("MatrixInverseC")({{1, 2}}),
                  VekMatrixNotSquare);
  CHECK(EntryPoint<double(DoubleMatrix)>("MatrixDeterminantC")(plain) == doctest::Approx(10));
  CloseClean(*engine);
}

TEST_CASE("arrays whose bounds promise what is not there") {
  auto engine = ServingAddIn();
  auto* multiply = EntryPoint<Binary>("MatrixMultiplyVB");
  auto* inverse = EntryPoint<Unary>("MatrixInverseVB");
  auto* eigendata = EntryPoint<TwoOutputs>("CalculateEigendataVB");
  auto* scores = EntryPoint<OneOutput>("CalculatePCAScoresVB");
  constexpr ULONG kMost = 0x7FFFFFFF;
  MacroArray hollow = MacroArray::Hollow({2, 2}), endless = MacroArray::Hollow({kMost, kMost});
  MacroVariant result, other;
  for (MacroArray* array : {&hollow, &endless}) {
    CHECK(Explained(FailureIn(inverse(*array))) == kNotItsSize);
    CHECK(Explained(FailureIn(multiply(*array, *array))) == kNotItsSize);
    CHECK(HasCondition(EntryPoint<Determinant>("MatrixDeterminantVB")(*array),
                       kConditionNotComputed));
    CHECK(Explained(eigendata(*array, result, other)) == kNotItsSize);
    CHECK(Explained(scores(*array, result)) == kNotItsSize);
    CHECK(Explained(EntryPoint<Association>("CalculateCovarianceMatrixVB")(0, 1, 0, *array,
                                                                           result)) == kNotItsSize);
  }
  CHECK((result.variant.vt == VT_EMPTY && other.variant.vt == VT_EMPTY));
  MacroArray flat = MacroArray::Hollow({0, kMost}), thin = MacroArray::Hollow({kMost, 0});
  CHECK((inverse(flat).vt == VT_EMPTY && inverse(thin).vt == VT_EMPTY));

  // As a place for a result such an array is replaced.
  MacroArray data(DoubleMatrix{{1, 2}, {3, 4}});
  VARIANT reference = ReferenceTo(hollow);
  CHECK(scores(data, &reference) == 0);
  CHECK(RowsOf(hollow.array).size() == 2);
  CloseClean(*engine);
}

TEST_CASE("a result that no memory holds leaves the arrays as they were") {
  auto engine = ServingAddIn();
  constexpr ULONG kCount = 1'000'000;
  MacroArray tall(VT_R8, {kCount, 1}), wide(VT_R8, {1, kCount});
  for (ULONG i = 0; i < kCount; ++i) tall.elements<double>()[i] = wide.elements<double>()[i] = i;
  CHECK(Explained(FailureIn(EntryPoint<Binary>("MatrixMultiplyVB")(tall, wide)))
            .starts_with("VekOutOfMemory|"));
  CHECK((tall.array->cLocks == 0 && wide.array->cLocks == 0));
  CHECK(std::equal(tall.elements<double>(), tall.elements<double>() + kCount,
                   wide.elements<double>()));
  CHECK(wide.elements<double>()[kCount - 1] == kCount - 1);
  CloseClean(*engine);
}

TEST_CASE("a macro's eigen-analysis and principal components") {
  auto engine = ServingAddIn();
  auto* eigenvalues = EntryPoint<OneOutput>("CalculateEigenvaluesVB");
  auto* eigenvectors = EntryPoint<OneOutput>("CalculateEigenvectorsVB");
  auto* eigendata = EntryPoint<TwoOutputs>("CalculateEigendataVB");
  auto* scores = EntryPoint<OneOutput>("CalculatePCAScoresVB");
  MacroArray matrix(DoubleMatrix{{2, 1}, {1, 2}}), wide(DoubleMatrix{{1, 2, 3}, {4, 5, 6}});
  MacroArray skew(DoubleMatrix{{1, 2, 3}, {2, 1, 0.5}, {3, 0.25, 1}}), series{1, 2};
  MacroVariant values, vectors;
  const auto check_both = [&] {
    REQUIRE(values.variant.vt == (VT_ARRAY | VT_R8));
    const std::vector<double> found = SeriesOf(values.variant.parray);
    REQUIRE(found.size() == 2);
    CHECK((found[0] == doctest::Approx(3) && found[1] == doctest::Approx(1)));
    const DoubleMatrix rows = RowsIn(vectors);
    CHECK(rows[0][0] == doctest::Approx(rows[1][0]));
    CHECK(rows[0][1] == doctest::Approx(-rows[1][1]));
    CHECK(std::abs(rows[0][1]) == doctest::Approx(std::sqrt(0.5)));
  };
  CHECK((eigenvalues(matrix, values) == 0 && eigenvectors(matrix, vectors) == 0));
  check_both();
  VariantClear(values);
  VariantClear(vectors);
  CHECK(eigendata(matrix, values, vectors) == 0);
  check_both();
  CHECK(eigendata(matrix, values, nullptr) == 0);
  CHECK(eigendata(matrix, nullptr, vectors) == 0);
  CHECK((eigenvalues(matrix, nullptr) == 0 && scores(series, nullptr) == 0));

  CHECK(Explained(eigenvalues(wide, values)).ends_with("|Matrix is (2 x 3), not square."));
  CHECK(Explained(eigendata(skew, values, vectors)) ==
        "VekMatrixNotSymmetric|matrix::eigendata_private|Matrix is symmetric at element (3, 2) "
        "(0.25 vs 0.5).");
  CHECK(Explained(eigenvectors(series, vectors)) == kNotTwoDimensional);
  MacroArray infinite(DoubleMatrix{{HUGE_VAL, 1}, {1, 2}});
  CHECK(Explained(eigenvalues(infinite, values)) ==
        "VekInvalidDataType|matrix::eigendata_private|Eigenvalues could not be calculated; matrix "
        "had invalid values.");
  CHECK(Explained(scores(infinite, values)) ==
        "VekInvalidDataType|matrix::PrincipalComponentScores|The data have values that are not "
        "finite numbers.");
  check_both();  // a failure leaves them as they were

  CHECK(scores(wide, vectors) == 0);
  const DoubleMatrix found = RowsIn(vectors);
  REQUIRE((found.size() == 2 && found[0].size() == 2));
  CHECK(std::hypot(found[0][0], found[0][1]) == doctest::Approx(std::sqrt(14)));
  CHECK(std::hypot(found[1][0], found[1][1]) == doctest::Approx(std::sqrt(77)));
  CHECK(found[0][0] * found[1][0] + found[0][1] * found[1][1] == doctest::Approx(32));
  CHECK(scores(matrix, vectors) == 0);
  CHECK(Explained(scores(series, vectors)) == kNotTwoDimensional);
  CloseClean(*engine);
}

TEST_CASE("results go into the arrays of a macro that can take them, and nowhere else") {
  auto engine = ServingAddIn();
  auto* scores = EntryPoint<OneOutput>("CalculatePCAScoresVB");
  auto* eigendata = EntryPoint<TwoOutputs>("CalculateEigendataVB");
  MacroArray data(DoubleMatrix{{1, 2, 3}, {4, 5, 6}}), matrix(DoubleMatrix{{2, 1}, {1, 2}});

  // As many rows: the array stays and gets the columns. Otherwise it is replaced.
  MacroArray fits(VT_R8, {2, 7}), other(VT_R8, {3, 2}), flat{1, 2}, unallocated;
  const SAFEARRAY* const kept = fits.array;
  for (MacroArray* array : {&fits, &other, &flat, &unallocated}) {
    VARIANT reference = ReferenceTo(*array);
    CHECK(scores(data, &reference) == 0);
    CHECK(reference.vt == (VT_BYREF | VT_ARRAY | VT_R8));
    const DoubleMatrix rows = RowsOf(array->array);
    CHECK((rows.size() == 2 && rows[0].size() == 2));
    VARIANT followed{};
    followed.vt = VT_BYREF | VT_VARIANT;
    followed.pvarVal = &reference;
    CHECK(scores(matrix, &followed) == 0);
    CHECK(std::abs(RowsOf(array->array)[0][0]) == doctest::Approx(3 * std::sqrt(0.5)));
  }
  CHECK(fits.array == kept);
  MacroArray vector;
  VARIANT values = ReferenceTo(vector);
  CHECK(eigendata(matrix, &values, nullptr) == 0);
  CHECK(SeriesOf(vector.array)[0] == doctest::Approx(3));
  // What a VARIANT held goes.
  MacroVariant text;
  text.variant.vt = VT_BSTR;
  text.variant.bstrVal = SysAllocString(L"text");
  CHECK(scores(matrix, text) == 0);
  CHECK(RowsIn(text).size() == 2);

  double number = 0.5;
  VARIANT reference{}, nowhere{}, null_place{}, null_variant{};
  reference.vt = VT_BYREF | VT_R8;
  reference.pdblVal = &number;
  null_place.vt = VT_BYREF | VT_ARRAY | VT_R8;
  null_variant.vt = VT_BYREF | VT_VARIANT;
  nowhere.vt = VT_BYREF | VT_ARRAY | VT_R8;
  nowhere.pparray = reinterpret_cast<SAFEARRAY**>(std::uintptr_t{16});
  MacroArray whole(VT_I4, {2, 2}), posing(VT_I4, {2, 2}), locked(VT_R8, {2, 2});
  MacroArray variants(VT_VARIANT, {2, 2});
  VARIANT to_whole = ReferenceTo(whole, VT_I4), to_posing = ReferenceTo(posing);
  VARIANT to_variants = ReferenceTo(variants, VT_VARIANT), holds_posing{}, astray{};
  holds_posing.vt = VT_ARRAY | VT_R8;
  holds_posing.parray = posing.array;
  astray.vt = VT_ARRAY | VT_R8;
  astray.parray = reinterpret_cast<SAFEARRAY*>(std::uintptr_t{16});
  const ReadOnlyPage read_only;
  SafeArrayLock(locked.array);
  VARIANT to_locked = ReferenceTo(locked), holds_locked{};
  holds_locked.vt = VT_ARRAY | VT_R8;
  holds_locked.parray = locked.array;
  for (VARIANT* bad :
       {&reference, &nowhere, &null_place, &null_variant, &to_whole, &to_posing, &holds_posing,
        &to_variants, &astray, read_only.as<VARIANT>(), &to_locked, &holds_locked}) {
    CAPTURE(bad->vt);
    const VARTYPE before = bad->vt;
    const char* const why = bad == &to_locked || bad == &holds_locked
                                ? "VekArraySizeError|ReDimVbArray|"
                                : "VekInvalidDataType|ReDimVbArray|";
    CHECK(Explained(scores(data, bad)).starts_with(why));
    CHECK(Explained(eigendata(matrix, bad, nullptr)).starts_with(why));
    CHECK(bad->vt == before);
  }
  // The one output that cannot be written keeps the other from being.
  MacroVariant vectors;
  CHECK(eigendata(matrix, &to_locked, vectors) != 0);
  CHECK(eigendata(matrix, &reference, vectors) != 0);
  CHECK(vectors.variant.vt == VT_EMPTY);
  CHECK(locked.array->cLocks == 1);
  SafeArrayUnlock(locked.array);
  CHECK(number == 0.5);

  // A matrix without elements leaves everything as it is.
  MacroArray empty(VT_R8, {3, 0});
  VARIANT untouched = ReferenceTo(fits);
  CHECK(scores(empty, &untouched) == 0);
  CHECK(RowsOf(fits.array).size() == 2);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
