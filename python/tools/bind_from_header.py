#!/usr/bin/env python3
"""Reads the public header of IirProcess and writes the module's docstrings
and the bindings of every operation that takes and returns plain numbers.

The header is the one place where the operations are documented; the Python
docstrings are its comments, so the two cannot drift apart, and an operation
added to the header is bound the next time the module is built.

usage: bind_from_header.py IirProcess.h OUTPUT.inc
"""
import os
import re
import sys

SCALARS = {"int", "double", "short", "unsigned int", "std::size_t"}
# Bound by hand in the module (arrays, vectorised queries, out-pointers) or
# meaningless from Python (the caller's allocator).
MANUAL = {"doProcess", "getCoef", "getDelay", "power", "phase"}
DECL = re.compile(r"^(?P<static>static\s+)?(?:explicit\s+)?(?P<ret>[\w:]+\s*\*?\s+)?"
                  r"(?P<name>~?\w+)\s*\((?P<params>[^)]*)\)\s*(?P<const>const)?")


def parse_params(text):
    params = []
    for p in filter(None, (s.strip() for s in text.split(","))):
        m = re.match(r"^(.*?)\s*(\w+)$", p)
        params.append((m.group(1).replace(" *", "*").strip(), m.group(2)))
    return params


def parse(header):
    """The public declarations in order, each with the comment above it and
    the note of the group it stands in."""
    # The export macro (on the class or on each member) is no part of the API.
    header = re.sub(r"\bMIVORA_API\s+", "", header)
    body = header.split("class IirProcess {", 1)[1].split("private:", 1)[0]
    overview = header.split("#ifndef", 1)[0]
    decls, comment, group, note, pending = [], [], "", [], ""
    block_has_decl = comment_closed = False
    for raw in body.splitlines() + [""]:
        line = raw.strip()
        if pending or (line and not line.startswith("//") and line != "public:"):
            pending = (pending + " " + line).strip()
            if not (pending.endswith(";") or pending.endswith("}")):
                continue
            decl, pending = pending, ""
            block_has_decl = True
            m = DECL.match(decl)
            if m and not m.group("name").startswith("~") and "constexpr" not in decl:
                decls.append(dict(name=m.group("name"), static=bool(m.group("static")),
                                  ret=(m.group("ret") or "").strip(), const=bool(m.group("const")),
                                  params=parse_params(m.group("params")),
                                  doc="\n".join(comment), group=group, note="\n".join(note)))
            elif "constexpr" in decl:
                name = re.search(r"(\w+)\s*=", decl).group(1)
                decls.append(dict(name=name, constant=True, doc="\n".join(comment), group=group, note=""))
            comment_closed = True
            continue
        if line.startswith("// ----"):
            group, note, comment = line.strip("/ -"), [], []
            block_has_decl = False
        elif line.startswith("//"):
            if comment and comment_closed:
                comment = []
            comment.append(raw.strip()[3:] if len(raw.strip()) > 2 else "")
            comment_closed = False
        elif not line:
            # A paragraph of comments with no declaration after it is a note
            # on the whole group.
            if comment and not block_has_decl:
                note += ([""] if note else []) + comment
            comment, block_has_decl, comment_closed = [], False, False
    overview = "\n".join(l[3:] if len(l) > 2 else "" for l in overview.splitlines()
                         if l.startswith("//"))
    return overview, decls


def docstring(d):
    parts = [d["doc"]] if d["doc"] else []
    if d["note"]:
        parts.append("%s:\n%s" % (d["group"], d["note"]))
    elif d["group"]:
        parts.append("(%s)" % d["group"])
    return "\n\n".join(parts)


def c_string(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", '\\n"\n        "') + '"'


def binding(d):
    types = ", ".join(t for t, _ in d["params"])
    cast = "py::overload_cast<%s>(&IirProcess::%s%s)" % (types, d["name"], ", py::const_" if d["const"] else "")
    args = "".join(', py::arg("%s")' % n for _, n in d["params"])
    how = "def_static" if d["static"] else "def"
    return '    cls.%s("%s", %s, docs::operation("%s", %d)%s);' % (how, d["name"], cast, d["name"], d["overload"], args)


def main(header_path, out_path):
    with open(header_path, encoding="utf-8") as f:
        overview, decls = parse(f.read())
    seen = {}
    for d in decls:
        d["overload"] = seen.get(d["name"], 0)
        seen[d["name"]] = d["overload"] + 1
    auto = [d for d in decls if not d.get("constant") and d["name"] != "IirProcess"
            and d["name"] not in MANUAL and d["ret"] in SCALARS | {"void"}
            and all(t in SCALARS for t, _ in d["params"])]
    out = ["// Generated from include/mivora/IirProcess.h by python/tools/bind_from_header.py.",
           "// Do not edit: change the header's comments instead.",
           "namespace docs {",
           "constexpr const char* kOverview = %s;" % c_string(overview),
           "constexpr Entry kEntries[] = {"]
    out += ['    {"%s", %d, %s},' % (d["name"], d.get("overload", 0), c_string(docstring(d))) for d in decls]
    out += ["};", "}  // namespace docs", "",
            "inline void bindPlainOperations(py::class_<IirProcess>& cls) {"]
    out += [binding(d) for d in auto]
    out += ["}"]
    os.makedirs(os.path.dirname(os.path.abspath(out_path)), exist_ok=True)
    with open(out_path, "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
