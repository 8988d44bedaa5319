#!/usr/bin/python3
"""Mutation check: does the test suite notice small faults in src/?

Copies the working tree into a scratch directory of its own, builds it there
once, then for each sampled mutant changes one site of one file in src/,
rebuilds incrementally, runs ctest, and restores the file. The sample is drawn
with a fixed seed from every site of the chosen mode, so two runs on the same
src/ try the same mutants whatever the tests are.

Modes:
  basic    binary operators (+ - * / < > <= >= == != && ||) swapped for a
           neighbour, numeric constants nudged, single statements dropped
  regroup  a sum or product of three terms reassociated, (a*b)/c -> a*(b/c),
           or its grouping commuted, (a*b)/c -> (a/c)*b: the same value in
           exact arithmetic, other roundings in floating point

Each mutant ends killed (ctest failed or timed out), survived, or no-compile.
A survivor is also run through a probe that drives every public operation
with typical arguments and hashes every result: "changes bits" when the hash
moves, "same bits" (likely equivalent) when it does not.

  scripts/mutate.py --mode basic --count 100 --seed 1
  scripts/mutate.py --mode regroup --count 30 --seed 1
  scripts/mutate.py --list --mode regroup          # show the sites, build nothing
  scripts/mutate.py --probe-only --mode regroup    # which mutants change bits (no ctest)
  scripts/mutate.py --compare BEFORE.txt AFTER.txt     # kills lost between two runs
  scripts/mutate.py --only-killed BEFORE.txt ...        # re-run only what BEFORE killed
  scripts/mutate.py --skip-sites src/math/ --exclude-tests '^python_' --exclude-label math
      # when the math and Python tests are untouched: their kills cannot change,
      # so leave their sites and their (slow) tests out of both runs

Results go to <work>/<mode>-s<seed>-n<count>.txt (one mutant a line). Runs on
two cores: ctest -j2, builds -j2; one mutant takes a few seconds.
"""
import argparse
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SOURCE_SUFFIXES = (".cpp", ".hpp", ".h")

# ---------------------------------------------------------------- site finding

OPERATOR_SWAP = {"+": "-", "-": "+", "*": "/", "/": "*", "<": "<=", ">": ">=", "<=": "<",
                 ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}
# A binary operator is written with a space on each side in this code base;
# pointer declarators (double* p), templates (cast<T>) and unary minus are not.
OPERATOR_RE = re.compile(r"(?<= )(<=|>=|==|!=|&&|\|\||[-+*/<>])(?= )")
NUMBER_RE = re.compile(r"(?<![\w.])(\d+\.\d*(?:[eE][-+]?\d+)?|\d+(?:[eE][-+]?\d+)|\d+)(?![\w.])")
NOT_A_STATEMENT = re.compile(
    r"^\s*(return|break|continue|case|default|using|typedef|static|const|constexpr|inline|template|"
    r"namespace|struct|class|enum|double|float|int|unsigned|short|long|bool|void|auto|std::|"
    r"Mivora::|design::|math::|if|for|while|else|do|switch|public|private|[#}{)\]])")

DECLARATION = re.compile(r"\s*[\w:]+(<[^;]*>)?\s+[A-Za-z_]\w*\s*[=;{(\[]")

# A term: a name (with members, scopes, subscripts) or call with flat
# arguments, or a number.
TERM = (r"(?:[A-Za-z_]\w*(?:(?:\.|::|->)[A-Za-z_]\w*)*(?:\[[^\[\]]*\])*(?:\([^()]*\))?"
        r"|\d+(?:\.\d*)?(?:[eE][-+]?\d+)?)")
MUL, ADD = "*/", "+-"
# (a op1 b) op2 c  and  a op1 (b op2 c)
LEFT_GROUP = re.compile(rf"\(\s*({TERM}) ([*/+-]) ({TERM})\s*\) ([*/+-]) ({TERM})(?![\w(\[.])")
RIGHT_GROUP = re.compile(rf"(?<![\w)\].])({TERM}) ([*/+-]) \(\s*({TERM}) ([*/+-]) ({TERM})\s*\)")
# a op1 b op2 c, read as (a op1 b) op2 c, bounded so nothing binds tighter.
CHAIN = re.compile(rf"(?:(?<=[(=,?:])|(?<=return)|(?<=[(=,?:] )|(?<=return ))({TERM}) ([*/+-]) ({TERM}) ([*/+-]) ({TERM})(?=\s*[);,?:]|\s*$)")


def same_family(op1, op2):
    return (op1 in MUL and op2 in MUL) or (op1 in ADD and op2 in ADD)


def reassociate_left(a, op1, b, op2, c):
    """(a op1 b) op2 c -> a op1' (b op2' c), equal in exact arithmetic."""
    inner = {("*", "*"): ("*", "*"), ("*", "/"): ("*", "/"), ("/", "*"): ("/", "/"),
             ("/", "/"): ("/", "*"), ("+", "+"): ("+", "+"), ("+", "-"): ("+", "-"),
             ("-", "+"): ("-", "-"), ("-", "-"): ("-", "+")}[(op1, op2)]
    return f"{a} {inner[0]} ({b} {inner[1]} {c})"


def commute_left(a, op1, b, op2, c):
    """(a op1 b) op2 c -> (a op2 c) op1 b: the other pair grouped first."""
    return f"({a} {op2} {c}) {op1} {b}"


def reassociate_right(a, op1, b, op2, c):
    """a op1 (b op2 c) -> (a op1' b) op2' c."""
    outer = {("*", "*"): ("*", "*"), ("*", "/"): ("*", "/"), ("/", "*"): ("/", "/"),
             ("/", "/"): ("/", "*"), ("+", "+"): ("+", "+"), ("+", "-"): ("+", "-"),
             ("-", "+"): ("-", "-"), ("-", "-"): ("-", "+")}[(op1, op2)]
    return f"({a} {outer[0]} {b}) {outer[1]} {c}"


def code_mask(text):
    """The text with comments, string/char literals and preprocessor lines
    blanked (same length and lines), so sites are looked for in code only."""
    out = list(text)
    i, n = 0, len(text)
    while i < n:
        if text.startswith("//", i) or text.startswith("/*", i):
            j = text.find("\n", i) if text[i + 1] == "/" else text.find("*/", i + 2) + 2
            j = n if j < 2 else j
            for k in range(i, j):
                out[k] = out[k] if out[k] == "\n" else " "
            i = j
        elif text[i] in "\"'" and not (text[i] == "'" and i > 0 and text[i - 1].isalnum()):
            j = i + 1
            while j < n and text[j] != text[i]:
                j += 2 if text[j] == "\\" else 1
            for k in range(i, min(j + 1, n)):
                out[k] = " "
            i = j + 1
        else:
            i += 1
    lines = "".join(out).split("\n")
    directive = False
    for k, line in enumerate(lines):
        if directive or line.lstrip().startswith("#"):
            directive = line.rstrip().endswith("\\")
            lines[k] = " " * len(line)
    return "\n".join(lines)


def nudge_number(lit):
    if re.fullmatch(r"\d+", lit):
        return str(int(lit) + 1)
    mant, _, exp = lit.partition("e") if "e" in lit else lit.partition("E")
    digits = re.sub(r"\D", "", mant)
    if "." in mant and mant.endswith("."):
        mant = mant + "0"
    # Add one to the last written digit (0.5 -> 0.6, 3.14159 -> 3.14160).
    m = list(mant)
    k = len(m) - 1
    while k >= 0:
        if m[k].isdigit():
            if m[k] != "9":
                m[k] = str(int(m[k]) + 1)
                break
            m[k] = "0"
        k -= 1
    new = "".join(m)
    if k < 0 or not digits:
        new = "1" + new
    return new + (("e" if "e" in lit else "E") + exp if exp else "")


def find_sites(tree, mode, skip_prefixes=()):
    """Every mutation site of the mode under tree/src, in a fixed order:
    (file, line, column, kind, original, replacement). Files whose path
    (relative to tree) starts with one of skip_prefixes are left out."""
    sites = []
    for path in sorted((tree / "src").rglob("*")):
        if path.suffix not in SOURCE_SUFFIXES:
            continue
        rel = str(path.relative_to(tree))
        if rel.startswith(tuple(skip_prefixes)):
            continue
        lines = path.read_text().split("\n")
        masked = code_mask("\n".join(lines)).split("\n")
        prev_end = ";"
        for no, (line, code) in enumerate(zip(lines, masked), start=1):
            stripped = code.strip()
            if not stripped:
                continue
            skip = re.match(r"\s*(static_assert|template|#)", code) is not None
            if mode == "basic" and not skip:
                for m in OPERATOR_RE.finditer(code):
                    op = m.group(1)
                    sites.append((rel, no, m.start(), "operator", op, OPERATOR_SWAP[op]))
                for m in NUMBER_RE.finditer(code):
                    sites.append((rel, no, m.start(), "constant", m.group(1), nudge_number(m.group(1))))
                if (stripped.endswith(";") and prev_end[-1] in ";{}:" and not NOT_A_STATEMENT.match(code)
                        and not DECLARATION.match(code)
                        and stripped.count("(") == stripped.count(")")):
                    sites.append((rel, no, 0, "drop", line, ""))
            # Regrouping is about floating-point roundings; the kernels' index
            # and pointer arithmetic is integer.
            if mode == "regroup" and not skip and not rel.startswith("src/core/"):
                taken = set()
                for m in LEFT_GROUP.finditer(code):
                    a, op1, b, op2, c = m.groups()
                    if same_family(op1, op2):
                        orig = m.group(0)
                        sites.append((rel, no, m.start(), "reassociate", orig, reassociate_left(a, op1, b, op2, c)))
                        sites.append((rel, no, m.start(), "commute", orig, commute_left(a, op1, b, op2, c)))
                        taken.add(m.start())
                for m in RIGHT_GROUP.finditer(code):
                    a, op1, b, op2, c = m.groups()
                    if same_family(op1, op2) and not (op1 in "+-" and a.isdigit()):
                        sites.append((rel, no, m.start(), "reassociate", m.group(0),
                                      reassociate_right(a, op1, b, op2, c)))
                for m in CHAIN.finditer(code):
                    a, op1, b, op2, c = m.groups()
                    if same_family(op1, op2) and m.start() not in taken:
                        orig = m.group(0)
                        sites.append((rel, no, m.start(), "reassociate", orig, reassociate_left(a, op1, b, op2, c)))
            prev_end = stripped
    return [s for s in sites if s[3] == "drop" or s[4] != s[5]]


def site_id(site):
    rel, no, col, kind, orig, repl = site
    shown = repl if kind != "drop" else "<dropped>"
    return f"{rel}:{no}:{col + 1} {kind} `{orig.strip()}` -> `{shown.strip()}`"


def apply(text, site):
    rel, no, col, kind, orig, repl = site
    lines = text.split("\n")
    line = lines[no - 1]
    if kind == "drop":
        indent = line[: len(line) - len(line.lstrip())]
        lines[no - 1] = indent + ";"
    else:
        assert line[col:col + len(orig)] == orig, (site, line)
        lines[no - 1] = line[:col] + repl + line[col + len(orig):]
    return "\n".join(lines)


# -------------------------------------------------------------------- running

def run(cmd, cwd, timeout, log):
    try:
        p = subprocess.run(cmd, cwd=cwd, stdout=log, stderr=subprocess.STDOUT, timeout=timeout,
                           start_new_session=True)
        return p.returncode
    except subprocess.TimeoutExpired:
        return "timeout"


def copy_tree(dest):
    """The working tree as it is now (committed or not), without build output."""
    ignore = shutil.ignore_patterns("build", ".git", "__pycache__")
    for item in ROOT.iterdir():
        if item.name in ("build", ".git") or item.name.startswith("build-"):
            continue
        target = dest / item.name
        if item.is_dir():
            shutil.copytree(item, target, ignore=ignore, dirs_exist_ok=True)
        else:
            shutil.copy2(item, target)


def sync_tree(src, dest):
    """Makes dest hold what src holds, rewriting only files whose content
    differs (so the rest keep their times and stay built)."""
    for path in src.rglob("*"):
        target = dest / path.relative_to(src)
        if path.is_dir():
            target.mkdir(parents=True, exist_ok=True)
        elif not target.exists() or target.read_bytes() != path.read_bytes():
            shutil.copy2(path, target)
            target.touch()
    for path in sorted(dest.rglob("*"), reverse=True):
        if not (src / path.relative_to(dest)).exists():
            shutil.rmtree(path) if path.is_dir() else path.unlink()


PROBE_SOURCE = r"""
// Drives every public operation for many rounds, first with the typical
// arguments, then with pseudo-random ones across their meaningful ranges, and
// prints a hash of every result and of the coefficients and response each
// operation leaves: equal hashes, equal bits on these inputs.
#include <cstdio>
#include "typical_driver.hpp"
using namespace mivora_test;
struct RandomDriver : TypicalDriver {
    std::uint64_t s = 88172645463325252u;
    double u() { s ^= s << 13, s ^= s >> 7, s ^= s << 17; return static_cast<double>(s >> 11) * 0x1p-53; }
    double in(double lo, double hi) { return lo + (hi - lo) * u(); }
    double freq() { return in(10.0, 20000.0); }
    double fs() { return in(40000.0, 100000.0); }
    double gainDb() { return in(-30.0, 30.0); }
    double q() { return in(0.2, 10.0); }
    double ripple() { return in(0.05, 3.0); }
    double stopLevel() { return in(0.0, 700.0); }
    double weight() { return in(-0.5, 1.5); }
    double levelDb() { return in(-20.0, 10.0); }
    double alpha() { return in(0.001, 1.0); }
    double bandLow() { return in(20.0, 2000.0); }
    double bandHigh() { return in(2500.0, 19000.0); }
    double warped() { return in(0.01, 2.0); }
    double lin() { return in(0.05, 2.0); }
    double cst() { return in(0.1, 3.0); }
    double zero() { return in(0.5, 10.0); }
};
template <class D>
unsigned long long run(D& d, int rounds) {
    alignas(IirProcess) unsigned char storage[sizeof(IirProcess)];
    IirProcess* f = ::new (storage) IirProcess();
    for (int round = 0; round < rounds; ++round)
        for (const auto& op : kOperations<D>) {
            op.run(*f, d);
            // What the operation left in the object: a design returns nothing.
            double c[IirProcess::maxCoefCount];
            f->getCoef(c);
            d.written(c, IirProcess::maxCoefCount);
            d.result(f->power(997.0, 48000.0));
            d.result(f->phase(997.0, 48000.0));
        }
    return d.digest();
}
int main() {
    TypicalDriver typical;
    RandomDriver random;
    std::printf("%016llx %016llx\n", run(typical, 60), run(random, 300));
}
"""


class Workspace:
    def __init__(self, work, jobs, timeout, exclude_tests=None, exclude_label=None):
        self.exclude = (["-E", exclude_tests] if exclude_tests else []) + (
            ["-LE", exclude_label] if exclude_label else [])
        self.work = work
        self.tree = work / "tree"
        self.build = work / "build"
        self.jobs = jobs
        self.timeout = timeout
        self.log = open(work / "last.log", "w")

    def prepare(self):
        if self.tree.exists():
            # Refresh the copy; unchanged files keep their times, so the build stays incremental.
            fresh = self.work / "fresh"
            shutil.rmtree(fresh, ignore_errors=True)
            fresh.mkdir()
            copy_tree(fresh)
            sync_tree(fresh, self.tree)
            shutil.rmtree(fresh)
        else:
            self.tree.mkdir(parents=True)
            copy_tree(self.tree)
        cfg = ["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
               "-DMIVORA_BUILD_BENCHMARKS=OFF", "-DMIVORA_BUILD_EXAMPLES=OFF", "-DMIVORA_INSTALL=OFF",
               # Headers compiled on their own catch no fault in what they compute.
               "-DMIVORA_CHECK_HEADERS=OFF"]
        # Restoring a file after each mutant costs a second compile; a compiler
        # cache makes that one a lookup.
        if shutil.which("ccache"):
            cfg.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
            os.environ.setdefault("CCACHE_DIR", str(self.work / "ccache"))
        if run(cfg, self.work, 600, self.log) != 0:
            sys.exit(f"configure failed; see {self.work / 'last.log'}")
        if not self.rebuild():
            sys.exit(f"the unmutated tree does not build; see {self.work / 'last.log'}")
        if self.test() != "pass":
            sys.exit(f"the unmutated tree fails its tests; see {self.work / 'last.log'}")
        self.baseline = self.probe()
        if self.baseline is None:
            sys.exit(f"the probe does not build; see {self.work / 'last.log'}")

    def rebuild(self, target=None):
        cmd = ["cmake", "--build", str(self.build), "-j", str(self.jobs)] + (["--target", target] if target else [])
        return run(cmd, self.work, 900, self.log) == 0

    def test(self):
        rc = run(["ctest", "--test-dir", str(self.build), "-j", str(self.jobs), "--timeout", str(self.timeout),
                  "--stop-on-failure"] + self.exclude, self.work, self.timeout * 20, self.log)
        return "pass" if rc == 0 else ("timeout" if rc == "timeout" else "fail")

    def probe(self):
        src = self.work / "probe.cpp"
        src.write_text(PROBE_SOURCE)
        exe = self.work / "probe"
        lib = next(self.build.rglob("libmivora.a"), None)
        if lib is None:
            return None
        cmd = ["c++", "-std=c++17", "-O1", "-ffp-contract=off", f"-I{self.tree / 'include'}",
               f"-I{self.tree / 'tests' / 'shared'}", f"-I{self.tree / 'tests' / 'support'}",
               str(src), str(lib), "-o", str(exe)]
        if run(cmd, self.work, 300, self.log) != 0:
            return None
        try:
            return subprocess.run([str(exe)], capture_output=True, text=True, timeout=60).stdout.strip()
        except subprocess.TimeoutExpired:
            return "timeout"


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--mode", choices=["basic", "regroup"], default="basic")
    ap.add_argument("--count", type=int, default=100, help="mutants to sample (default 100)")
    ap.add_argument("--seed", type=int, default=1)
    ap.add_argument("--work", type=Path, default=ROOT / "build" / "mutation",
                    help="scratch directory: tree copy, build, results")
    ap.add_argument("--jobs", type=int, default=2)
    ap.add_argument("--timeout", type=int, default=60, help="seconds per test")
    ap.add_argument("--only-killed", type=Path, metavar="RESULTS",
                    help="run only the sampled mutants that RESULTS (an earlier run) records as killed")
    ap.add_argument("--probe-only", action="store_true",
                    help="build the library alone and run the probe, no ctest: does each mutant change bits?")
    ap.add_argument("--skip-sites", action="append", default=[], metavar="PREFIX",
                    help="sample no site in files under PREFIX (e.g. src/math/); repeatable")
    ap.add_argument("--exclude-tests", metavar="REGEX", help="ctest -E REGEX: tests not run per mutant")
    ap.add_argument("--exclude-label", metavar="REGEX", help="ctest -LE REGEX: labels not run per mutant")
    ap.add_argument("--list", action="store_true", help="print the sampled sites and stop")
    ap.add_argument("--compare", type=Path, nargs=2, metavar=("BEFORE", "AFTER"),
                    help="list mutants killed in BEFORE but not in AFTER, and stop")
    args = ap.parse_args()

    if args.compare:
        def read(p):
            return dict(line.split("\t", 1)[::-1] for line in p.read_text().splitlines() if "\t" in line)
        before, after = read(args.compare[0]), read(args.compare[1])
        lost = [m for m, r in before.items() if r.startswith("killed") and not after.get(m, "").startswith("killed")]
        for m in lost:
            print(f"lost: {m} ({after.get(m, 'not run')})")
        print(f"{len(lost)} kill(s) lost of {sum(r.startswith('killed') for r in before.values())}")
        return 1 if lost else 0

    sites = find_sites(ROOT, args.mode, args.skip_sites)
    sample = random.Random(args.seed).sample(sites, min(args.count, len(sites)))
    if args.only_killed:
        killed_before = {line.split("\t", 1)[1] for line in args.only_killed.read_text().splitlines()
                         if line.startswith("killed")}
        sample = [s for s in sample if site_id(s) in killed_before]
    if args.list:
        for s in sample:
            print(site_id(s))
        print(f"{len(sample)} of {len(sites)} {args.mode} sites, seed {args.seed}")
        return 0

    args.work.mkdir(parents=True, exist_ok=True)
    ws = Workspace(args.work.resolve(), args.jobs, args.timeout, args.exclude_tests, args.exclude_label)
    print(f"preparing {ws.work} ...", flush=True)
    ws.prepare()

    pending = {}  # path -> original text, restored on any exit

    def restore(*_):
        for path, text in pending.items():
            path.write_text(text)
        pending.clear()

    def on_signal(signum, _frame):
        restore()
        sys.exit(128 + signum)

    signal.signal(signal.SIGINT, on_signal)
    signal.signal(signal.SIGTERM, on_signal)

    results = []
    suffix = "-rerun" if args.only_killed else "-probe" if args.probe_only else ""
    out_path = ws.work / f"{args.mode}-s{args.seed}-n{args.count}{suffix}.txt"
    start = time.time()
    try:
        for i, site in enumerate(sample, start=1):
            path = ws.tree / site[0]
            original = path.read_text()
            pending[path] = original
            path.write_text(apply(original, site))
            try:
                if args.probe_only:
                    digest = ws.probe() if ws.rebuild(target="mivora_iir") else None
                    outcome = "no-compile" if digest is None else (
                        "same bits" if digest == ws.baseline else "changes bits")
                elif not ws.rebuild():
                    outcome = "no-compile"
                else:
                    t = ws.test()
                    if t == "pass":
                        digest = ws.probe()
                        outcome = "survived, " + ("same bits" if digest == ws.baseline else "changes bits")
                    else:
                        outcome = "killed" + (" (timeout)" if t == "timeout" else "")
            finally:
                restore()
            results.append((site, outcome))
            print(f"[{i}/{len(sample)}] {outcome:24} {site_id(site)}", flush=True)
        ws.rebuild()  # leave the build matching the unmutated tree
    finally:
        restore()
        with open(out_path, "w") as f:
            for site, outcome in results:
                f.write(f"{outcome}\t{site_id(site)}\n")

    if args.probe_only:
        changed = [s for s, o in results if o == "changes bits"]
        print(f"\nmode {args.mode}, seed {args.seed}, {len(results)} mutants probed: {len(changed)} change bits")
        for s in changed:
            print(f"  changes bits: {site_id(s)}")
        print(f"results: {out_path}")
        return 0
    killed = sum(o.startswith("killed") for _, o in results)
    survived = [(s, o) for s, o in results if o.startswith("survived")]
    nocompile = sum(o == "no-compile" for _, o in results)
    print(f"\nmode {args.mode}, seed {args.seed}, {len(results)} mutants of {len(sites)} sites "
          f"({time.time() - start:.0f} s)")
    print(f"killed {killed}, survived {len(survived)}, did not compile {nocompile}")
    for s, o in survived:
        print(f"  survivor ({o[len('survived, '):]}): {site_id(s)}")
    print(f"results: {out_path}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
