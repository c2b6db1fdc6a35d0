#!/usr/bin/env python3
"""report_test.py PROGRAM SCRATCH_FOLDER: every analysis of `zavhost report`, beside what R gives, and what it says of
data that it cannot use."""
import csv
import json
import pathlib
import re
import statistics
import subprocess
import sys
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
program, scratch = sys.argv[1], pathlib.Path(sys.argv[2])
scratch.mkdir(parents=True, exist_ok=True)
IRIS = ROOT / "examples/iris.csv"
problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


def run(*arguments):
    return subprocess.run([program, *map(str, arguments)], capture_output=True, text=True, encoding="utf-8")


def report(analysis, data, *options):
    """The cells of a report by their names, and the program's words."""
    out = scratch / f"{analysis}.xlsx"
    made = run("report", analysis, data, *options, "-o", out)
    check(made.returncode == 0, f"{analysis}: code {made.returncode}, {made.stderr}")
    checked = run("check", out)
    check(checked.returncode == 0, f"{analysis}: the stored values are not the calculated ones: {checked.stdout}")
    listed = json.loads(run("run", out, "--all", "--json").stdout)["cells"]
    check(listed, f"{analysis}: no formula")
    cells = {}
    for cell in listed:
        column, row = re.fullmatch(r"([A-Z]+)(\d+)", cell["cell"]).groups()
        rows = cell["value"] if isinstance(cell["value"], list) else [[cell["value"]]]
        for down, values in enumerate(rows):
            for right, value in enumerate(values):
                cells[letters(number(column) + right) + str(int(row) + down)] = value
    return cells, made


def number(column):
    value = 0
    for letter in column:
        value = 26 * value + ord(letter) - 64
    return value


def letters(value):
    text = ""
    while value:
        value, digit = divmod(value - 1, 26)
        text = chr(65 + digit) + text
    return text


def near(what, value, expected, relative=1e-6):
    close = isinstance(value, (int, float)) and abs(value - expected) <= relative * abs(expected)
    check(close, f"{what} is {value}, expected {expected}")


def check_values():
    with open(IRIS, encoding="utf-8", newline="") as file:
        rows = list(csv.DictReader(file))
    lengths = [float(row["Sepal.Length"]) for row in rows]
    summary, _ = report("summary", IRIS)
    near("count", summary["B5"], 150)
    near("mean", summary["B6"], statistics.mean(lengths))
    near("deviation", summary["B7"], statistics.stdev(lengths))
    near("skewness of Petal.Width", summary["E13"], -0.10296674764898)
    grouped, _ = report("summary", IRIS, "--by", "species", "--columns", "Petal.Length,Sepal.Width")
    check([grouped[f"{column}4"] for column in "BCD"] == ["setosa", "versicolor", "virginica"], "names of the groups")
    near("mean of a group", grouped["D6"], 5.552)
    frequencies, _ = report("frequencies", IRIS)
    counts = [frequencies[f"E{row}"] for row in range(10, 19)]
    check(sum(counts) == 150 and frequencies["G18"] == 1, f"frequencies {counts}")
    check(counts[-1] == sum(length >= 7.5 for length in lengths), "the last class")
    percentiles, _ = report("percentiles", IRIS)
    near("lower decile", percentiles["B7"], 4.8)
    outliers, _ = report("outliers", IRIS)
    check([outliers[f"G{row}"] for row in range(5, 9)] == [0, 4, 0, 0], "mild outliers")
    correlations, _ = report("correlations", IRIS)
    near("correlation", correlations["D5"], 0.87175377588658)
    near("Spearman's", correlations["D11"], 0.88189812643495)
    covariances, _ = report("covariances", IRIS)
    near("covariance", covariances["D5"], 1.2743154362416)
    components, _ = report("principal-components", IRIS)
    near("first eigenvalue", components["B17"], 2.9184978165319)
    scores = [components[f"V{row}"] for row in range(5, 155)]
    near("variance of the first scores", statistics.variance(scores), 2.9184978165319)
    fits, _ = report("distribution-fits", IRIS, "--columns", "Sepal.Length")
    check(isinstance(fits["A5"], str) and fits["B5"] <= fits["B6"], "the ranking")
    for analysis, *options in (["box-plots"], ["box-plots", "--by", "Species"], ["qq-plots"]):
        report(analysis, IRIS, *options)


def check_tests():
    sleep, _ = report("two-groups", ROOT / "examples/sleep.csv", "--columns", "extra", "--by", "group")
    near("Mann-Whitney with ties", sleep["B17"], 0.069327575433627, 1e-9)
    near("U", sleep["B10"], 25.5)
    several, _ = report("several-groups", IRIS, "--by", "Species", "--columns", "Sepal.Length")
    near("Kruskal-Wallis H", several["B9"], 96.937436000648, 1e-9)
    near("its p-value", several["B12"], 8.91873433e-22, 1e-6)
    pairs, _ = report("signed-ranks", ROOT / "examples/depression.csv", "--columns", "before,after")
    near("exact signed ranks", pairs["B13"], 0.0390625, 1e-12)


def check_inputs():
    """Tables as people have them."""
    book = scratch / "Größe und Maß.xlsx"
    made = run("report", "summary", IRIS, "-o", book)
    check(made.returncode == 0 and "Summary statistics: " in made.stdout, f"a name with umlauts: {made}")
    table = scratch / "mixed.csv"
    table.write_text('"width, mm",remark\n1,a\nbroken,b\n,c\n4,d\n2.5,e\n', encoding="utf-8")
    cells, words = report("summary", table)
    check(cells["B5"] == 3 and "width, mm: cells that are no numbers and are left out: 1" in words.stderr, f"gaps: {words.stderr}")
    table.write_text("=1+1,b\x1b[31m\n1,2\n2,4\n4,3\n", encoding="utf-8")
    made = run("report", "scatter-plots", table, "-o", book)
    check(made.returncode == 0, f"odd headings: {made}")
    with zipfile.ZipFile(book) as package:
        charts = [package.read(name).decode() for name in package.namelist() if "charts/chart" in name]
    check(any("> =1+1" in chart for chart in charts), "a heading like a formula is no title")
    check(not any("<c:f>1+1<" in chart for chart in charts), "a heading like a formula is a reference")


def check_german():
    """Every text of the analyses has its translation: none of the English sheet stands on the German one."""
    for analysis, *options in (["summary"], ["percentiles"], ["outliers"], ["correlations"], ["frequencies"],
                               ["several-groups", "--by", "Species"]):
        texts = {}
        for language in ("en", "de"):
            out = scratch / f"{language}.xlsx"
            run("report", analysis, IRIS, *options, "--language", language, "-o", out)
            with zipfile.ZipFile(out) as package:
                shared = package.read("xl/sharedStrings.xml").decode()
            texts[language] = set(re.findall(r"<t[^>]*>([^<]*)</t>", shared))
        data = {*open(IRIS, encoding="utf-8").readline().strip().split(","), "setosa", "versicolor", "virginica", ""}
        same = (texts["en"] & texts["de"]) - data - {"Minimum", "Maximum", "Median", "Mild", "Pearson", "Spearman"}
        check(not same and len(texts["en"]) == len(texts["de"]), f"{analysis}: also in German: {same}")
    listed = run("report", "--list", "--language", "de").stdout
    check("Boxplots der Merkmale" in listed, "the German list")


BAD = [
    ("x\n", "there are headings, but no rows below them"),
    ("\n1\n", "column A has no heading"),
    ("a,b\nx,y\nz,w\n", "the data have no column of numbers"),
    ("a\n1\n", "summary: a has fewer than 2 numbers"),
]


def check_refusals():
    table, out = scratch / "bad.csv", scratch / "bad.xlsx"
    out.write_text("mine", encoding="utf-8")
    for content, reason in BAD:
        table.write_text(content, encoding="utf-8")
        refused = run("report", "summary", table, "-o", out)
        check(refused.returncode == 1 and reason in refused.stderr, f"{content!r}: {refused.stderr}")
    for arguments, reason in (
            (["two-groups", IRIS, "--by", "Species"], "two groups are compared, and Species has 3"),
            (["two-groups", IRIS], "a column that divides the rows into groups is needed"),
            (["correlations", IRIS, "--columns", "Sepal.Length"], "columns of numbers needed: 2, given: 1"),
            (["correlations", IRIS, "--by", "Species"], "the rows are not divided into groups here"),
            (["summary", IRIS, "--columns", "Petal"], "the data have no column Petal"),
            (["principal-components", ROOT / "examples/air-quality.csv"], "has gaps"),
            (["sumary", IRIS], "there is no analysis sumary"),
            (["summary", scratch / "none.csv"], "none.csv")):
        refused = run("report", *arguments, "-o", out)
        check(refused.returncode == 1 and reason in refused.stderr, f"{arguments}: {refused.stderr}")
    check(out.read_text(encoding="utf-8") == "mine", "a refused report has replaced a file")
    check(run("report", "summary", IRIS).returncode == 64, "no output is needed")
    listed = run("report", "--list").stdout
    check("  two-groups " in listed and "Kruskal-Wallis" in listed, "the list")
    left = {file.name for file in scratch.iterdir() if file.name.endswith(".tmp")}
    check(not left, f"left behind: {left}")


check_values()
check_tests()
check_inputs()
check_german()
check_refusals()
print("\n".join(problems) or "every analysis gives what R gives")
sys.exit(1 if problems else 0)
