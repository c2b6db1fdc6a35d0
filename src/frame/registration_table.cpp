#include "frame/registration_table.h"

namespace zavrel {
namespace {

// Companion application 5 is the product's own macro add-in; 7 is a second one that uses the same
// functions.
constexpr std::uint32_t kExtension = 1u << 5;
constexpr std::uint32_t kBoth = 1u << 5 | 1u << 7;
constexpr std::uint32_t kAlways = kAlwaysRegistered | 1u << 5;

constexpr std::uint16_t kListed = 1;
constexpr std::uint16_t kHidden = 0;
constexpr std::int16_t kNoTopic = -1;

constexpr TextReference kEmpty = "";
constexpr TextReference kRepeatLast = TextReference::RepeatLast();
constexpr std::array<TextReference, kArgumentHelps> kTwentyEmpty = [] {
  std::array<TextReference, kArgumentHelps> helps;
  helps.fill(kEmpty);
  return helps;
}();

/// A type text of `values` letters P (the first is the result's) followed by R until there are 30
/// arguments.
constexpr std::array<char, 32> ThirtyArguments(std::size_t values) {
  std::array<char, 32> text{};
  for (std::size_t i = 0; i < 31; ++i) text[i] = i < values ? 'P' : 'R';
  return text;
}
constexpr auto kThirtyRanges = ThirtyArguments(1);
constexpr auto kValueThenRanges = ThirtyArguments(2);
constexpr auto kThreeValuesThenRanges = ThirtyArguments(4);

// One row, one line where it fits.
// clang-format off
// Columns: applications, export, types, visible name, argument text, macro type, help topic,
// category, function help, argument helps.
constinit const RegistrationRow kMainTable[] = {
    {kAlways, "ZavrelFuncsVersion", "J", "ZavrelFuncsVersion", kEmpty, kHidden, kNoTopic, 7, kEmpty, kTwentyEmpty},
    {kBoth, "ZavrelDestack", "CRRPRP", "ZavDestack", 1066, kListed, 189, 7, 1067, {{1068, 1069, 1070, 1071, 1072}}},
    {kBoth, "ZavrelMultiRange", "PIRP", "ZavMulti", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelDurbinWatson", "PR", "ZavDurbinWatson", 1073, kListed, 190, 7, 1074, {{1075}}},
    {kBoth, "ZavrelAutocorrelation", "PRJ", "ZavAutocorrelation", 1076, kListed, 296, 7, 1077, {{1078, 1079}}},
    {kBoth, "ZavrelBoxPlotX", "PRPP", "ZavBoxPlotX", 1080, kHidden, kNoTopic, 7, 1081, {}},
    {kBoth, "ZavrelBoxPlotY", "PJP", "ZavBoxPlotY", 1082, kHidden, kNoTopic, 7, 1083, {}},
    {kBoth, "ZavrelBoxPlotCountOutliers", "JRP", "ZavBoxPlotCountOutliers", 1080, kHidden, kNoTopic, 7, 1081, {}},
    {kBoth, "ZavrelOutlierType", "PRPP", "ZavOutlierType", 1594, kHidden, kNoTopic, 7, 1595, {}},
    {kBoth, "ZavrelScatterPlot", "PRRI", "ZavScatterPlot", 1084, kHidden, kNoTopic, 7, 1085, {}},
    {kBoth, "ZavrelQQPlotStandardize", "PR", "ZavQQPlotStandardize", 1086, kHidden, kNoTopic, 7, 1087, {}},
    {kBoth, "ZavrelQQPlotSort", "PR", "ZavQQPlotSort", 1088, kHidden, kNoTopic, 7, 1089, {}},
    {kBoth, "ZavrelQQPlotZValue", "PRP", "ZavQQPlotZValue", 1090, kHidden, kNoTopic, 7, 1091, {}},
    {kBoth, "ZavrelLilliefors", "PR", "ZavLilliefors", 1092, kHidden, 252, 7, 1093, {{1094}}},
    {kBoth, "ZavrelRunsTest", "PRB", "ZavRunsTest", 1095, kListed, 215, 7, 1096, {{1097, 1098}}},
    {kBoth, "ZavrelPercentile", "PRPP", "ZavPercentile", 1099, kListed, 209, 7, 1100, {{1101, 1102, 1103}}},
    {kBoth, "ZavrelQuartile", "PRPP", "ZavQuartile", 1104, kListed, 212, 7, 1105, {{1106, 1107, 1108}}},
    {kBoth, "ZavrelMedian", "PRP", "ZavMedian", 1109, kListed, 200, 7, 1110, {{1111, 1112}}},
    {kBoth, "ZavrelMean", kThirtyRanges.data(), "ZavMean", 1113, kListed, 198, 7, 1114, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMeanI", kThirtyRanges.data(), "ZavMeanI", 1113, kHidden, kNoTopic, 7, 1116, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMode", "PRP", "ZavMode", 1376, kListed, 1240, 7, 1377, {{1378, 1379}}},
    {kBoth, "ZavrelVariance", kThirtyRanges.data(), "ZavVariance", 1113, kListed, 225, 7, 1117, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelVarianceP", kThirtyRanges.data(), "ZavVarianceP", 1113, kListed, 1210, 7, 1118, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelStdDev", kThirtyRanges.data(), "ZavStdDev", 1113, kListed, 219, 7, 1119, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelStdDevP", kThirtyRanges.data(), "ZavStdDevP", 1113, kListed, 220, 7, 1120, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelSkewness", kThirtyRanges.data(), "ZavSkewness", 1113, kListed, 216, 7, 1121, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelSkewnessP", kThirtyRanges.data(), "ZavSkewnessP", 1113, kListed, 217, 7, 1122, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelKurtosis", kThirtyRanges.data(), "ZavKurtosis", 1113, kListed, 193, 7, 1123, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelKurtosisP", kThirtyRanges.data(), "ZavKurtosisP", 1113, kListed, 194, 7, 1124, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMin", kThirtyRanges.data(), "ZavMin", 1113, kListed, 201, 7, 1125, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMinI", kThirtyRanges.data(), "ZavMinI", 1113, kHidden, kNoTopic, 7, 1126, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMax", kThirtyRanges.data(), "ZavMax", 1113, kListed, 196, 7, 1127, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMaxI", kThirtyRanges.data(), "ZavMaxI", 1113, kHidden, kNoTopic, 7, 1128, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelRange", kThirtyRanges.data(), "ZavRange", 1113, kListed, 213, 7, 1129, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelRangeI", kThirtyRanges.data(), "ZavRangeI", 1113, kHidden, kNoTopic, 7, 1130, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelCount", kThirtyRanges.data(), "ZavCount", 1113, kListed, 185, 7, 1131, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelCountRange", "PRPPPP", "ZavCountRange", 1132, kListed, 186, 7, 1133, {{1134, 1135, 1136, 1137, 1138}}},
    {kBoth, "ZavrelCountCellsByType", "PRP", "ZavCountCellsByType", 1139, kListed, 303, 7, 1140, {{1141, 1142}}},
    {kBoth, "ZavrelIsBlank", "PP", "ZavIsBlank", 1143, kHidden, kNoTopic, 7, 1144, {{1145}}},
    {kBoth, "ZavrelPower", "PRP", "ZavPower", kEmpty, kListed, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelLog", "PRP", "ZavLog", kEmpty, kListed, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelDummy", "PRP", "ZavDummy", kEmpty, kListed, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelInteraction", "PRPRPRPRPRPRPRP", "ZavInteraction", kEmpty, kListed, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelSum", kThirtyRanges.data(), "ZavSum", 1113, kListed, 221, 7, 1146, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelSumI", kThirtyRanges.data(), "ZavSumI", 1113, kHidden, kNoTopic, 7, 1147, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelProduct", kThirtyRanges.data(), "ZavProduct", 1113, kListed, 210, 7, 1148, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelProductI", kThirtyRanges.data(), "ZavProductI", 1113, kHidden, kNoTopic, 7, 1149, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelAveDev", kThirtyRanges.data(), "ZavAveDev", 1113, kListed, 181, 7, 1150, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelSumSq", kThirtyRanges.data(), "ZavSumSq", 1113, kListed, 309, 7, 1151, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelSumDevSq", kThirtyRanges.data(), "ZavSumDevSq", 1113, kListed, 308, 7, 1152, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelMeanAbs", kThirtyRanges.data(), "ZavMeanAbs", 1113, kListed, 1230, 7, 1153, {{1115, kRepeatLast}}},
    {kBoth, "ZavrelPairCount", "PRR", "ZavPairCount", 1165, kListed, 206, 7, 1154, {{1155, 1156}}},
    {kBoth, "ZavrelPairCountRange", "PRRPPPP", "ZavPairCountRange", 1157, kHidden, kNoTopic, 7, 1158, {{1159, 1160, 1161, 1162, 1163, 1164}}},
    {kBoth, "ZavrelPairMean", "PRR", "ZavPairMean", 1165, kListed, 207, 7, 1166, {{1167, 1168}}},
    {kBoth, "ZavrelPairMedian", "PRRP", "ZavPairMedian", 1169, kListed, 306, 7, 1170, {{1171, 1172, 1173}}},
    {kBoth, "ZavrelPairStdDev", "PRR", "ZavPairStdDev", 1165, kListed, 208, 7, 1174, {{1175, 1176}}},
    {kBoth, "ZavrelPairMeanQuotient", "PRR", "ZavPairMeanQuotient", 1165, kHidden, kNoTopic, 7, 1177, {{1178, 1179}}},
    {kBoth, "ZavrelPairMeanAbsQuotient", "PRR", "ZavPairMeanAbsQuotient", 1165, kHidden, kNoTopic, 7, 1180, {{1181, 1182}}},
    {kBoth, "ZavrelCovariance", "PRR", "ZavCovariance", 1165, kListed, 187, 7, 1183, {{1184, 1185}}},
    {kBoth, "ZavrelCovarianceP", "PRR", "ZavCovarianceP", 1165, kListed, 188, 7, 1186, {{1187, 1188}}},
    {kBoth, "ZavrelCorrelationCoeff", "PRRP", "ZavCorrelationCoeff", 1189, kListed, 184, 7, 1190, {{1191, 1192, 1346}}},
    {kBoth, "ZavrelStudentizedRangeDist", "PPPP", "ZavStudentizedRangeDist", 1193, kHidden, kNoTopic, 7, 1194, {{1195, 1196, 1197}}},
    {kBoth, "ZavrelStudentizedRangeInv", "PPPP", "ZavStudentizedRangeInv", 1198, kHidden, kNoTopic, 7, 1199, {{1200, 1201, 1202}}},
    {kBoth, "ZavrelNormal", "PPPPP", "ZavNormal", 1203, kListed, 305, 8, 1204, {{1205, 1206, 1207, 1208}}},
    {kBoth, "ZavrelStudent", "PPPP", "ZavStudent", 1209, kListed, 310, 8, 1210, {{1211, 1212, 1213}}},
    {kBoth, "ZavrelChisq", "PPPP", "ZavChisq", 1214, kListed, 301, 8, 1215, {{1216, 1217, 1218}}},
    {kBoth, "ZavrelF", "PPPPP", "ZavF", 1219, kListed, 304, 8, 1220, {{1221, 1222, 1223, 1224}}},
    {kBoth, "ZavrelBinomial", "PPPPP", "ZavBinomial", 1225, kListed, 297, 8, 1226, {{1227, 1228, 1229, 1230}}},
    {kBoth, "ZavrelStandardize", "PPPP", "ZavStandardize", 1231, kListed, 218, 7, 1232, {{1233, 1234, 1235}}},
    {kBoth, "ZavrelLn", "PP", "ZavLn", 1236, kListed, 195, 7, 1237, {{1238}}},
    {kBoth, "ZavrelRand", "B!", "ZavRand", kEmpty, kListed, 307, 7, 1239, {}},
    {kBoth, "ZavrelCountCategories", "PR", "ZavCountCategories", 1240, kListed, 302, 7, 1241, {{1242}}},
    {kBoth, "ZavrelCategoryNames", "PR", "ZavCategoryNames", 1243, kListed, 299, 7, 1244, {{1245}}},
    {kBoth, "ZavrelCategoryNamesPrivate", "PRC", "ZavCategoryNamesPrivate", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelCategoryNamesPrivate2", "PRC", "ZavCategoryNamesPrivate2", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelCategoryOccurrenceCount", "PRP", "ZavCategoryOccurrenceCount", 1246, kListed, 300, 7, 1247, {{1248, 1249}}},
    {kBoth, "ZavrelCategoryIndices", "PRP", "ZavCategoryIndices", 1250, kListed, 298, 7, 1251, {{1252, 1253}}},
    {kBoth, "ZavrelCategoryIndicesPrivate", "PRPC", "ZavCategoryIndicesPrivate", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelCategoryIndicesPrivate2", "PRPC", "ZavCategoryIndicesPrivate2", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelCategoryNameCompare", "PPP", "ZavCategoryNameCompare", 1254, kHidden, kNoTopic, 7, 1255, {{1256, 1257}}},
    {kBoth, "ZavrelGetCellValues", "PRP", "ZavGetCellValues", 1258, kListed, 1220, 7, 1259, {{1260, 1261}}},
    {kBoth, "ZavrelGetCellValuesPrivate", "PRPC", "ZavGetCellValuesPrivate", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelGetCellValuesPrivate2", "PRPCC", "ZavGetCellValuesPrivate2", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelGetCellValuesCategoryPrivate2", "PRPC%C", "ZavGetCellValuesCategoryPrivate2", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelGetCellValuesNumericPrivate2", "PRPBC", "ZavGetCellValuesNumericPrivate2", kEmpty, kHidden, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelEigenvalues", "PR", "ZavEigenvalues", 1548, kListed, kNoTopic, 7, 1544, {{1547}}},
    {kBoth, "ZavrelEigenvectors", "PR", "ZavEigenvectors", 1548, kListed, kNoTopic, 7, 1545, {{1547}}},
    {kBoth, "ZavrelEigendata", "PR", "ZavEigendata", 1548, kListed, kNoTopic, 7, 1546, {{1547}}},
    {kBoth, "ZavrelPCAScores", "PR", "ZavPCAScores", kEmpty, kListed, kNoTopic, 7, kEmpty, {}},
    {kBoth, "ZavrelCorrelationMatrix", kThreeValuesThenRanges.data(), "ZavCorrelationMatrix", 1550, kListed, kNoTopic, 7, 1549, {{1551, 1552, 1553, 1554, kRepeatLast}}},
    {kBoth, "ZavrelCovarianceMatrix", kThreeValuesThenRanges.data(), "ZavCovarianceMatrix", 1550, kListed, kNoTopic, 7, 1555, {{1551, 1552, 1553, 1554, kRepeatLast}}},
};
static_assert(std::size(kMainTable) == 91);

constinit const RegistrationRow kExtensionTable[] = {
    {kExtension, "ZavrelWSRExactPValMaxSample", "P", "ZavWSRExactPValMaxSample", kEmpty, kHidden, kNoTopic, 7, 1262, {}},
    {kExtension, "ZavrelWSRpValue", "PPPP", "ZavWSRpValue", 1263, kHidden, kNoTopic, 7, 1264, {{1265, 1266, 1267}}},
    {kExtension, "ZavrelWSRTies", "PRP", "ZavWSRTies", 1268, kHidden, kNoTopic, 7, 1269, {{1270, 1271}}},
    {kExtension, "ZavrelWSRTieCorrectionTerm", "PRP", "ZavWSRTieCorrectionTerm", 1272, kHidden, kNoTopic, 7, 1273, {{1274, 1275}}},
    {kExtension, "ZavrelWSRNegative", "PRP", "ZavWSRNegative", 1276, kHidden, kNoTopic, 7, 1277, {{1278, 1279}}},
    {kExtension, "ZavrelWSRPositive", "PRP", "ZavWSRPositive", 1280, kHidden, kNoTopic, 7, 1281, {{1282, 1283}}},
    {kExtension, "ZavrelWSRPairTies", "PRRP", "ZavWSRPairTies", 1284, kHidden, kNoTopic, 7, 1285, {{1286, 1287, 1288}}},
    {kExtension, "ZavrelWSRPairTieCorrectionTerm", "PRRP", "ZavWSRPairTieCorrectionTerm", 1289, kHidden, kNoTopic, 7, 1290, {{1291, 1292, 1293}}},
    {kExtension, "ZavrelWSRPairNegative", "PRRP", "ZavWSRPairNegative", 1294, kHidden, kNoTopic, 7, 1295, {{1296, 1297, 1298}}},
    {kExtension, "ZavrelWSRPairPositive", "PRRP", "ZavWSRPairPositive", 1299, kHidden, kNoTopic, 7, 1300, {{1301, 1302, 1303}}},
    {kExtension, "ZavrelMWUsingNormalApproximation", "PPP", "ZavMWUsingNormalApproximation", 1304, kHidden, kNoTopic, 7, 1305, {{1306, 1307}}},
    {kExtension, "ZavrelMWpValue", "PPPPP", "ZavMWpValue", 1308, kHidden, kNoTopic, 7, 1309, {{1310, 1311, 1312, 1313}}},
    {kExtension, "ZavrelMWTies", "PRR", "ZavMWTies", 1314, kHidden, kNoTopic, 7, 1315, {{1316, 1317}}},
    {kExtension, "ZavrelMWTieCorrectionTerm", "PRR", "ZavMWTieCorrectionTerm", 1318, kHidden, kNoTopic, 7, 1319, {{1320, 1321}}},
    {kExtension, "ZavrelMWRankSum1", "PRR", "ZavMWRankSum1", 1322, kHidden, kNoTopic, 7, 1323, {{1324, 1325}}},
    {kExtension, "ZavrelMWRankSum2", "PRR", "ZavMWRankSum2", 1326, kHidden, kNoTopic, 7, 1327, {{1328, 1329}}},
    {kExtension, "ZavrelKWData", kValueThenRanges.data(), "ZavKWData", kEmpty, kHidden, kNoTopic, 7, "whatever", {{"data set"}}},
    {kExtension, "ZavrelKWpValue", kValueThenRanges.data(), "ZavKWpValue", kEmpty, kHidden, kNoTopic, 7, "whatever", {{"data set"}}},
    {kExtension, "ZavrelKWpValueComputationMethod", "PR", "ZavKWpValueComputationMethod", kEmpty, kHidden, kNoTopic, 7, "whatever", {{"data set"}}},
};
static_assert(std::size(kExtensionTable) == 19);
// clang-format on

}  // namespace

std::span<const RegistrationRow> MainTable() { return kMainTable; }
std::span<const RegistrationRow> ExtensionTable() { return kExtensionTable; }

}  // namespace zavrel
