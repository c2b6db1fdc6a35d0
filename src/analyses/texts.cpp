#include "analyses/texts.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace zavrel::analyses {
namespace {

/// In the order of the English texts.
constexpr std::pair<std::string_view, std::string_view> kGermanTexts[] = {
    {"A cell of the column that divides the rows into groups:",
     "Eine Zelle der Spalte, die die Zeilen in Gruppen teilt:"},
    {"A cell of the column that divides the rows into groups; Cancel for no groups:",
     "Eine Zelle der Spalte, die die Zeilen in Gruppen teilt; Abbrechen für keine Gruppen:"},
    {"A row with a gap is left out for the pairs that it concerns.",
     "Eine Zeile mit einer Lücke fehlt bei den Paaren, die sie betrifft."},
    {"A value is a mild outlier from 1.5 interquartile ranges beyond a quartile, an extreme one "
     "from 3.",
     "Ein Wert ist ab 1,5 Quartilsabständen jenseits eines Quartils ein milder Ausreißer, ab 3 ein "
     "extremer."},
    {"Best", "Beste"},
    {"Biplot", "Biplot"},
    {"Box", "Box"},
    {"Box plots", "Boxplots"},
    {"By maximum likelihood, the least AIC first. A small p-value speaks against the best one too.",
     "Nach größter Likelihood, das kleinste AIC zuerst. Ein kleiner p-Wert spricht auch gegen die "
     "beste."},
    {"Cells with the data, with headings in the first row:",
     "Zellen mit den Daten, mit Überschriften in der ersten Zeile:"},
    {"Cells without a number are left out. Quartiles are linear between values; variance, skewness "
     "and kurtosis are those of a sample.",
     "Zellen ohne Zahl zählen nicht mit. Quartile sind linear zwischen den Werten; Varianz, "
     "Schiefe und Wölbung sind die einer Stichprobe."},
    {"Class", "Klasse"},
    {"Class width", "Klassenbreite"},
    {"Classes of equal width from the smallest to the greatest value. A value on a limit belongs "
     "to the class above.",
     "Klassen gleicher Breite vom kleinsten bis zum größten Wert. Ein Wert auf einer Grenze gehört "
     "zur Klasse darüber."},
    {"Comparison of pairs", "Vergleich von Paaren"},
    {"Comparison of several groups", "Vergleich mehrerer Gruppen"},
    {"Comparison of two groups", "Vergleich zweier Gruppen"},
    {"Component", "Komponente"},
    {"Correlation", "Korrelation"},
    {"Correlation matrix", "Korrelationsmatrix"},
    {"Correlations", "Korrelationen"},
    {"Count", "Anzahl"},
    {"Covariance", "Kovarianz"},
    {"Covariance matrix", "Kovarianzmatrix"},
    {"Covariances", "Kovarianzen"},
    {"Cumulative", "Kumuliert"},
    {"Degrees of freedom", "Freiheitsgrade"},
    {"Differences other than 0", "Differenzen ungleich 0"},
    {"Distributions", "Verteilungen"},
    {"Each variable across against the ones after it. A row with a gap has no point.",
     "Jedes Merkmal waagrecht gegen die folgenden. Eine Zeile mit einer Lücke hat keinen Punkt."},
    {"Eigenvalue", "Eigenwert"},
    {"Estimate", "Schätzwert"},
    {"Extreme", "Extrem"},
    {"Fitting a distribution", "Anpassung einer Verteilung"},
    {"Fraction", "Anteil"},
    {"Frequencies", "Häufigkeiten"},
    {"From", "Von"},
    {"Groups of ties", "Gruppen von Bindungen"},
    {"H, corrected for ties", "H, für Bindungen korrigiert"},
    {"Histogram of", "Histogramm von"},
    {"Interquartile range", "Quartilsabstand"},
    {"Kruskal-Wallis test of whether values of some group tend to be greater, corrected for ties, "
     "with the chi-square approximation of its p-value.",
     "Kruskal-Wallis-Test, ob Werte einer Gruppe eher größer sind, für Bindungen korrigiert, mit "
     "der Chi-Quadrat-Näherung des p-Werts."},
    {"Kurtosis", "Wölbung"},
    {"Linear between values, the definition that is usual in spreadsheets.",
     "Linear zwischen den Werten, wie in Tabellenprogrammen üblich."},
    {"Lines of the biplot", "Linien des Biplots"},
    {"Loadings", "Ladungen"},
    {"Log-likelihood", "Log-Likelihood"},
    {"Lower extreme outliers", "Untere extreme Ausreißer"},
    {"Lower limit", "Untere Grenze"},
    {"Lower mild outliers", "Untere milde Ausreißer"},
    {"Lower quartile", "Unteres Quartil"},
    {"Lower whisker", "Unterer Whisker"},
    {"Mann-Whitney test of whether values of one group tend to be greater. The first p-value is "
     "exact for small samples and takes no account of ties.",
     "Mann-Whitney-Test, ob Werte einer Gruppe eher größer sind. Der erste p-Wert ist bei kleinen "
     "Stichproben exakt und berücksichtigt Bindungen nicht."},
    {"Maximum", "Maximum"},
    {"Mean", "Mittelwert"},
    {"Mean difference", "Mittlere Differenz"},
    {"Means", "Mittelwerte"},
    {"Median", "Median"},
    {"Median difference", "Median der Differenzen"},
    {"Medians of", "Mediane von"},
    {"Middle", "Mitte"},
    {"Mild", "Mild"},
    {"Minimum", "Minimum"},
    {"Normal Q-Q plot of", "Q-Q-Diagramm der Normalverteilung:"},
    {"Normal Q-Q plots", "Q-Q-Diagramme der Normalverteilung"},
    {"Normal quantile", "Quantil der Normalverteilung"},
    {"Of the correlations: each variable counts with the same weight. The sign of a component is "
     "arbitrary.",
     "Der Korrelationen: Jedes Merkmal zählt gleich viel. Das Vorzeichen einer Komponente ist "
     "willkürlich."},
    {"Outliers", "Ausreißer"},
    {"Pairs", "Paare"},
    {"Parameters", "Parameter"},
    {"Pearson", "Pearson"},
    {"Pearson's and Spearman's coefficients", "die Koeffizienten von Pearson und Spearman"},
    {"Percentiles", "Perzentile"},
    {"Principal components", "Hauptkomponenten"},
    {"Q-Q plot of", "Q-Q-Diagramm von"},
    {"Q-Q plots", "Q-Q-Diagramme"},
    {"Quantile", "Quantil"},
    {"Quantile of the best distribution", "Quantil der besten Verteilung"},
    {"Quantiles of the normal distribution with the data's mean and standard deviation. Points on "
     "the line fit.",
     "Quantile der Normalverteilung mit Mittelwert und Standardabweichung der Daten. Punkte auf "
     "der Linie passen."},
    {"Quartiles are linear between values. At most 20 outliers of a kind are drawn.",
     "Quartile sind linear zwischen den Werten. Höchstens 20 Ausreißer einer Art sind gezeichnet."},
    {"Rank sum of negative differences", "Rangsumme der negativen Differenzen"},
    {"Rank sum of positive differences", "Rangsumme der positiven Differenzen"},
    {"Rank sum of the first group", "Rangsumme der ersten Gruppe"},
    {"Scatter plot matrix", "Matrix von Streudiagrammen"},
    {"Scatter plots", "Streudiagramme"},
    {"Score", "Wert"},
    {"Scree plot", "Scree-Diagramm"},
    {"Several groups", "Mehrere Gruppen"},
    {"Share", "Anteil"},
    {"Skewness", "Schiefe"},
    {"Spearman", "Spearman"},
    {"Standard deviation", "Standardabweichung"},
    {"Standard deviation, with ties", "Standardabweichung, mit Bindungen"},
    {"Standard error", "Standardfehler"},
    {"Statistic", "Maßzahl"},
    {"Summary", "Maßzahlen"},
    {"Summary statistics", "Statistische Maßzahlen"},
    {"The divisor is n - 1. A row with a gap is left out for the pairs that it concerns.",
     "Der Divisor ist n - 1. Eine Zeile mit einer Lücke fehlt bei den Paaren, die sie betrifft."},
    {"Tie correction term", "Bindungskorrektur"},
    {"To", "Bis"},
    {"Two groups", "Zwei Gruppen"},
    {"U of the first group", "U der ersten Gruppe"},
    {"Upper extreme outliers", "Obere extreme Ausreißer"},
    {"Upper limit", "Obere Grenze"},
    {"Upper mild outliers", "Obere milde Ausreißer"},
    {"Upper quartile", "Oberes Quartil"},
    {"Upper whisker", "Oberer Whisker"},
    {"Values", "Werte"},
    {"Variable", "Merkmal"},
    {"Wilcoxon's signed-rank test of two variables, row by row",
     "der Vorzeichen-Rang-Test von Wilcoxon für zwei Merkmale, Zeile für Zeile"},
    {"Wilcoxon's signed-rank test of whether the differences lie about 0. Differences of 0 and "
     "rows with a gap are left out.",
     "Vorzeichen-Rang-Test von Wilcoxon, ob die Differenzen um 0 liegen. Differenzen von 0 und "
     "Zeilen mit einer Lücke zählen nicht mit."},
    {"a column that divides the rows into groups is needed",
     "es wird eine Spalte gebraucht, die die Zeilen in Gruppen teilt"},
    {"a scatter plot of every pair of variables", "ein Streudiagramm für jedes Paar von Merkmalen"},
    {"box plots of the variables, or of one variable by group",
     "Boxplots der Merkmale, oder eines Merkmals nach Gruppen"},
    {"by", "nach"},
    {"by normal approximation", "durch Normalnäherung"},
    {"classes of equal width with counts and shares, and histograms",
     "Klassen gleicher Breite mit Anzahlen und Anteilen, und Histogramme"},
    {"column {0} has no heading", "Spalte {0} hat keine Überschrift"},
    {"columns of numbers at most: {0}, given: {1}",
     "Spalten mit Zahlen höchstens: {0}, gegeben: {1}"},
    {"columns of numbers needed: {0}, given: {1}", "Spalten mit Zahlen nötig: {0}, gegeben: {1}"},
    {"count, mean, standard deviation, quartiles, skewness and kurtosis, by group too",
     "Anzahl, Mittelwert, Standardabweichung, Quartile, Schiefe und Wölbung, auch nach Gruppen"},
    {"covariances and variances, with gaps left out pair by pair",
     "Kovarianzen und Varianzen, Lücken paarweise ausgelassen"},
    {"each variable against the normal distribution", "jedes Merkmal gegen die Normalverteilung"},
    {"eigenvalues and loadings of the correlations, scores, scree plot and biplot",
     "Eigenwerte und Ladungen der Korrelationen, Werte, Scree-Diagramm und Biplot"},
    {"every row needs a number, and {0} has gaps",
     "jede Zeile braucht eine Zahl, und {0} hat Lücken"},
    {"nine percentiles of each variable", "neun Perzentile jedes Merkmals"},
    {"normal distribution", "Normalverteilung"},
    {"observations", "Beobachtungen"},
    {"p-value", "p-Wert"},
    {"p-value, corrected for ties", "p-Wert, für Bindungen korrigiert"},
    {"p-value, two-sided", "p-Wert, zweiseitig"},
    {"pairs", "Paare"},
    {"perfect fit", "vollkommene Anpassung"},
    {"test of fit, by 199 samples", "Anpassungstest mit 199 Stichproben"},
    {"the Kruskal-Wallis test, corrected for ties",
     "der Kruskal-Wallis-Test, für Bindungen korrigiert"},
    {"the Mann-Whitney test, exact and with ties",
     "der Mann-Whitney-Test, exakt und mit Bindungen"},
    {"the add-in of the distributions is not loaded",
     "das Add-in der Verteilungen ist nicht geladen"},
    {"the areas of the data do not have the same rows",
     "die Bereiche der Daten haben nicht dieselben Zeilen"},
    {"the column {0} has no numbers", "die Spalte {0} hat keine Zahlen"},
    {"the data are blank", "die Daten sind leer"},
    {"the data have merged cells", "die Daten haben verbundene Zellen"},
    {"the data have no column of numbers", "die Daten haben keine Spalte mit Zahlen"},
    {"the data have no column {0}", "die Daten haben keine Spalte {0}"},
    {"the distributions that fit best, the estimates of the best, and its Q-Q plot",
     "die am besten passenden Verteilungen, die Schätzwerte der besten und ihr Q-Q-Diagramm"},
    {"the rows are not divided into groups here",
     "die Zeilen werden hier nicht in Gruppen geteilt"},
    {"there are headings, but no rows below them",
     "es gibt Überschriften, aber keine Zeilen darunter"},
    {"there are more than {0} columns", "es sind mehr als {0} Spalten"},
    {"there are more than {0} rows", "es sind mehr als {0} Zeilen"},
    {"two groups are compared, and {0} has {1}", "zwei Gruppen werden verglichen, und {0} hat {1}"},
    {"values beyond 1.5 and 3 interquartile ranges",
     "Werte jenseits von 1,5 und 3 Quartilsabständen"},
    {"z, with ties and continuity", "z, mit Bindungen und Stetigkeitskorrektur"},
    {"{0} does not have two groups", "{0} hat keine zwei Gruppen"},
    {"{0} has fewer than {1} numbers", "{0} hat weniger als {1} Zahlen"},
    {"{0} has numbers that are not whole: groups have names or whole numbers",
     "{0} hat Zahlen, die nicht ganz sind: Gruppen haben Namen oder ganze Zahlen"},
    {"{0} has {1} groups, more than {2}", "{0} hat {1} Gruppen, mehr als {2}"},
    {"{0}: cells that are no numbers and are left out: {1}",
     "{0}: Zellen, die keine Zahlen sind und nicht mitzählen: {1}"},
};
static_assert(std::ranges::is_sorted(kGermanTexts));

}  // namespace

std::string Message::Text(Language language) const {
  fmt::dynamic_format_arg_store<fmt::format_context> arguments;
  for (const std::string& value : values) arguments.push_back(std::cref(value));
  return fmt::vformat(Translated(english, language), arguments);
}

std::string Translated(std::string_view english, Language language) {
  if (language == Language::kEnglish) return std::string(english);
  const auto* const found = std::ranges::lower_bound(kGermanTexts, english, {},
                                                     [](const auto& text) { return text.first; });
  const bool known = found != std::ranges::end(kGermanTexts) && found->first == english;
  return std::string(known ? found->second : english);
}

}  // namespace zavrel::analyses
