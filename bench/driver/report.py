"""The report: a table, JSON, plots, and the same in the documentation."""

import json
import os
import pathlib
import re
import subprocess

PLOTS = {
    "registry": ("Reading one setting", "keys in the file", "microseconds", True,
                 {"Setting": "the store", "GLibKeyFile": "GKeyFile",
                  "ReadAndFindLines": "reading, and where the lines end"}),
    "typing": ("Checking a PIN against a full policy", "bytes", "microseconds", False,
               {"CheckPolicies": "all local policies"}),
}


def table(head, rows):
    lines = [head, ["---"] * len(head), *rows]
    return "\n".join("| " + " | ".join(str(cell) for cell in line) + " |" for line in lines) + "\n"


def figures_table(figures):
    return table(["figure", "median", "middle half", "target", ""],
                 [figure.as_row() for figure in figures])


def shares_table(shares):
    return table(["part", "compiler seconds"], [[name, f"{spent:.1f}"] for name, spent in shares])


def plot(directory, curves):
    """One picture for each entry of PLOTS."""
    os.makedirs(directory, exist_ok=True)
    for name, (title, x_label, y_label, logarithmic, lines) in PLOTS.items():
        data, parts = [], []
        for index, (curve, label) in enumerate(lines.items()):
            data.append("\n".join(f"{size} {time}" for size, time in curves[curve]))
            parts.append(f"$data index {index} with linespoints linewidth 2 title '{label}'")
        script = [
            "set terminal pngcairo size 640,400", f"set output '{directory}/{name}.png'",
            f"set title '{title}'", f"set xlabel '{x_label}'", f"set ylabel '{y_label}'",
            "set key top left", "set grid", "set logscale xy" if logarithmic else "set yrange [0:]",
            "$data << EOD", "\n\n\n".join(data), "EOD", "plot " + ", ".join(parts)]
        subprocess.run(["gnuplot"], input="\n".join(script), text=True, check=True)


def write(directory, groups, shares, curves):
    directory = pathlib.Path(directory)
    directory.mkdir(parents=True, exist_ok=True)
    parts = [f"## {name}\n\n{figures_table(figures)}" for name, figures in groups.items()]
    if shares:
        parts.append("## Where build time goes\n\n" + shares_table(shares))
    (directory / "report.md").write_text("\n".join(parts), encoding="utf-8")
    (directory / "report.json").write_text(json.dumps(
        {"figures": {name: [figure.as_json() for figure in figures]
                     for name, figures in groups.items()},
         "build": shares, "curves": curves}, indent=1), encoding="utf-8")
    if curves:
        plot(directory, curves)


def put_into(document, groups, shares):
    """Replaces what stands between the marks of each group that was measured."""
    path = pathlib.Path(document)
    text = path.read_text(encoding="utf-8")
    tables = {name: figures_table(figures) for name, figures in groups.items()}
    if shares:
        tables["build shares"] = shares_table(shares)
    for name, content in tables.items():
        pattern = rf"(<!-- {name} -->\n).*?(<!-- end -->)"
        text, count = re.subn(pattern, lambda match, content=content:
                              match[1] + content + match[2], text, flags=re.DOTALL)
        if count != 1:
            raise SystemExit(f"{document} has {count} places for '{name}'")
    path.write_text(text, encoding="utf-8")
