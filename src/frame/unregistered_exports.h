#pragma once
// What the add-in exports beside the rows of the registration tables: called by Excel itself or by
// a macro add-in, never from a formula. A test holds the built library's exports against the tables
// and this list.
//
// Strings that a macro exchanges with them. VARIANTs hold wide strings, and so do the
// out-parameters of forms that end in W or WVB and of ZavrelGetExceptionInfoVB. A string result and
// every other string out-parameter (the ids) follow what a parameter or result declared `As String`
// does: a BSTR of bytes in the ANSI code page, which loses what the page lacks.

namespace zavrel {

inline constexpr const char* kUnregisteredExports[] = {
    // Excel
    "xlAutoOpen",
    "xlAutoClose",
    "xlAutoAdd",
    "xlAutoRemove",
    "xlAutoFree",
    "xlAutoFree12",
    // announce and withdraw
    "InitializeXlaInformationW",
    "InitializeXlaInformationVB",
    "UninitializeXlaInformation",
    // macro add-in
    "ZavrelGetExceptionInfoVB",
    "ZavrelWriteRangeVB",
    // macro add-in, cells of a range
    "VariantIdString",
    "ZavrelGetCellValuesSetArrayVB",
    "ZavrelGetCellValuesSetArrayPrivateVB",
    "ZavrelGetCellValuesCategorySetArrayPrivateVB",
    "ZavrelGetCellValuesNumericSetArrayPrivateVB",
    "ZavrelGetCellValueCategory",
    "ZavrelGetCellValueCategoryW",
    // macro add-in, statistics of arrays
    "ZavrelMinVB",
    "ZavrelMaxVB",
    "ZavrelMeanVB",
    "ZavrelStdDevVB",
    "ZavrelStdDevPVB",
    "ZavrelVarianceVB",
    "ZavrelVariancePVB",
    "ZavrelSkewnessVB",
    "ZavrelSkewnessPVB",
    "ZavrelKurtosisVB",
    "ZavrelKurtosisPVB",
    "ZavrelSumSqVB",
    "ZavrelSumDevSqVB",
    "ZavrelModeVB",
    "ZavrelPercentileVB",
    "ZavrelQuartileVB",
    "ZavrelMedianVB",
    // macro add-in, categories
    "ZavrelCategoryNamesGetArrayVB",
    "ZavrelCategoryNamesSetArrayPrivateVB",
    "ZavrelCategoryNamesSetArrayPrivateWVB",
    "ZavrelCategoryIndicesSetArrayVB",
    "ZavrelCategoryIndicesSetArrayPrivateVB",
    // macro add-in, matrices
    "ZavrelCovarianceVB",
    "ZavrelCovariancePVB",
    "ZavrelCorrelationCoeffVB",
    "CalculateCovarianceMatrixVB",
    "CalculateCorrelationMatrixVB",
    "MatrixAddVB",
    "MatrixMultiplyVB",
    "MatrixInverseVB",
    "MatrixDeterminantVB",
    "CalculateEigenvaluesVB",
    "CalculateEigenvectorsVB",
    "CalculateEigendataVB",
    "CalculatePCAScoresVB",
    // libraries of the suite, matrices
    "CalculateCovarianceMatrixC",
    "CalculateCorrelationMatrixC",
    "MatrixAddC",
    "MatrixMultiplyC",
    "MatrixInverseC",
    "MatrixDeterminantC",
    // macro add-in, single values
    "ZavrelStandardizeVB",
    "ZavrelRandVB",
    // macro add-in, distributions
    "ZavrelNormalVB",
    "ZavrelStudentVB",
    "ZavrelChisqVB",
    "ZavrelFVB",
    "ZavrelBinomialVB",
};

}  // namespace zavrel
