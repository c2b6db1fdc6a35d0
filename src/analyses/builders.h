#pragma once
// The builders, one for each analysis.

#include "analyses/analysis.h"

namespace zavrel::analyses {

ReportSheet BuildSummary(const Data& data);
ReportSheet BuildFrequencies(const Data& data);
ReportSheet BuildPercentiles(const Data& data);
ReportSheet BuildOutliers(const Data& data);
ReportSheet BuildBoxPlots(const Data& data);
ReportSheet BuildQuantilePlots(const Data& data);
ReportSheet BuildScatterPlots(const Data& data);
ReportSheet BuildCovariances(const Data& data);
ReportSheet BuildCorrelations(const Data& data);
ReportSheet BuildPrincipalComponents(const Data& data);
ReportSheet BuildTwoGroups(const Data& data);
ReportSheet BuildSeveralGroups(const Data& data);
ReportSheet BuildSignedRanks(const Data& data);
ReportSheet BuildDistributionFits(const Data& data);

}  // namespace zavrel::analyses
