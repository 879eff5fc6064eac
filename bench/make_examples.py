#!/usr/bin/env python3
"""Writes examples/big and examples/big20: the benchmark printer of the ppdc
anchor (big.drv, big20.drv and their .strings catalogs) as ppdforge product
descriptions.

The PPDs that ppdc writes for the anchor are the source of truth: every media
size (keyword, name, paper dimension, imageable area), option, choice, group,
constraint and header attribute is read from them, so the product describes
exactly what ppdc describes. Run it again after the anchor changes; the output
is the same for the same anchor and the same ppdc.

    bench/make_examples.py [--anchor DIR] [--ppdc PROGRAM]
"""
import argparse
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile

REPO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DEFAULT_ANCHOR = os.path.join(os.path.dirname(REPO), "shared", "bench-anchor")
LANGUAGES = ["de", "fr", "es", "it", "ja", "pt", "ru", "zh_CN"]
BUNDLE = "acme-laserpro.bundle"

# Header attributes that the document writes itself, or that have no place in
# a product description.
SKIPPED_ATTRIBUTES = {"cupsLanguages", "DefaultImageableArea", "DefaultPaperDimension"}
# Attributes whose numbers come from the product's custom page size data.
CUSTOM_SIZE_FORMATS = {
    ("MaxMediaWidth", ""): "%g",
    ("MaxMediaHeight", ""): "%g",
    ("HWMargins", ""): "%g %g %g %g",
    ("ParamCustomPageSize", "Width"): "1 points %g %g",
    ("ParamCustomPageSize", "Height"): "2 points %g %g",
}

# Two resolvers, with the cupsUIConstraints that name them. Their option sets
# differ from every UIConstraints pair of the anchor, since a later constraint
# on the same options replaces an earlier one.
RESOLVERS = [
    {"resolver-name": "AcmeDuplexOff", "option-1": "Duplex", "choice-1": "None",
     "comment": "Turns two-sided printing off"},
    {"resolver-name": "AcmeFinishingOff", "option-1": "AcmeStaple", "choice-1": "None",
     "option-2": "AcmePunch", "choice-2": "None"},
]
CUPS_CONSTRAINTS = [
    {"option-1": "Duplex", "option-2": "MediaType", "choice-2": "PhotoMatte",
     "cupsUIConstraint": True, "resolver": "AcmeDuplexOff",
     "comment": "Matte photo paper is printed on one side"},
    {"option-1": "AcmeStaple", "option-2": "AcmePunch", "option-3": "MediaType",
     "choice-3": "Glossy", "cupsUIConstraint": True, "resolver": "AcmeFinishingOff"},
]


def number(text):
    """A PPD number as a plist number: an integer when it is whole, else a
    real rounded to 4 decimals."""
    value = round(float(text), 4)
    return int(value) if value == int(value) else value


def rounded(value):
    value = round(value, 4)
    return int(value) if value == int(value) else value


LINE = re.compile(r'^\*([^\s:/]+)(?: ([^:/]+))?(?:/([^:]*))?: ?(.*)$')


def parse_ppd(path):
    """The statements of a PPD that ppdc wrote: (keyword, spec, text, value,
    quoted) in file order, plus the OpenGroup context of each."""
    statements = []
    group = None
    with open(path, encoding="utf-8") as f:
        for raw in f:
            line = raw.rstrip("\n")
            if not line.startswith("*") or line.startswith("*%"):
                continue
            m = LINE.match(line)
            if not m:
                raise ValueError("%s: cannot read %r" % (path, line))
            keyword, spec, text, value = m.group(1), m.group(2) or "", m.group(3) or "", m.group(4)
            quoted = value.startswith('"') and value.endswith('"') and len(value) >= 2
            if quoted:
                value = value[1:-1]
            if keyword == "OpenGroup":
                group = value.split("/", 1)
                continue
            if keyword == "CloseGroup":
                group = None
                continue
            statements.append({"keyword": keyword, "spec": spec, "text": text, "value": value,
                               "quoted": quoted, "group": group})
    return statements


def read_model(path):
    st = parse_ppd(path)
    header, fonts, options, constraints = [], [], [], []
    media, geometry, custom = [], {}, []
    default_size = None
    current = None
    in_header = True
    for s in st:
        k = s["keyword"]
        if k in ("UIConstraints", "OpenUI"):
            in_header = False
        if k == "UIConstraints":
            constraints.append(s["value"])
            continue
        if k == "OpenUI":
            name = s["spec"].lstrip("*")
            current = {"keyword": name, "text": s["text"], "ui": s["value"], "group": s["group"],
                       "choices": [], "default": None}
            if name not in ("PageSize", "PageRegion"):
                options.append(current)
            continue
        if k == "CloseUI":
            current = None
            continue
        if current is not None:
            if k == "Default" + current["keyword"]:
                current["default"] = s["value"]
                if k == "DefaultPageSize":
                    default_size = s["value"]
            elif k == current["keyword"]:
                current["choices"].append((s["spec"], s["text"], s["value"]))
                if k == "PageSize":
                    media.append((s["spec"], s["text"]))
            continue
        if k in ("ImageableArea", "PaperDimension"):
            geometry.setdefault(s["spec"], {})[k] = [float(x) for x in s["value"].split()]
        elif k in ("Font", "DefaultFont"):
            fonts.append(s)
        elif in_header:
            if k not in SKIPPED_ATTRIBUTES:
                header.append(s)
        elif k in ("MaxMediaWidth", "MaxMediaHeight", "HWMargins", "CustomPageSize",
                   "ParamCustomPageSize"):
            custom.append(s)
        elif k not in SKIPPED_ATTRIBUTES:
            raise ValueError("%s: unexpected statement *%s" % (path, k))
    return {"header": header, "fonts": fonts, "options": options, "constraints": constraints,
            "media": media, "geometry": geometry, "custom": custom, "default_size": default_size}


def attribute(s, generator=None, value=None, value_type=None):
    entry = {"name": s["keyword"]}
    if generator:
        entry["generator"] = generator
    if s["spec"]:
        entry["spec"] = s["spec"]
    if s["text"]:
        entry["translation"] = s["text"]
    entry["value"] = s["value"] if value is None else value
    if value_type is None:
        value_type = 1 if s["quoted"] else 3
    entry["value-type"] = value_type
    return entry


def media_entry(keyword, name, geometry):
    """One media size. The rectangles are given the way the page size
    generator reads them: the paper rectangle relative to the imageable
    area's top left corner, so that all four margins come out exact."""
    width, height = geometry["PaperDimension"]
    left, bottom, right, top = geometry["ImageableArea"]
    margin_left, margin_bottom = left, bottom
    margin_right, margin_top = width - right, height - top
    entry = {"name": name, "PPDName": keyword}
    rect = {
        "paperRectTop": -margin_top,
        "paperRectLeft": -margin_left,
        "paperRectBottom": height - margin_top,
        "paperRectRight": width - margin_left,
        "pageRectBottom": height - margin_top - margin_bottom,
        "pageRectRight": width - margin_left - margin_right,
    }
    for key, value in rect.items():
        value = rounded(value)
        if value != 0:
            entry[key] = value
    if margin_left == 0 and margin_bottom == 0 and margin_right == 0 and margin_top == 0:
        entry["supportsFullBleed"] = True
        entry["oversprayScaleFactor"] = 1.0
    return entry


def custom_size_numbers(custom):
    """customPageSizeMargins (top, left, bottom, right) and
    customPageSizeConstraints (minimum height, minimum width, maximum height,
    maximum width) from the custom size statements."""
    values = {}
    for s in custom:
        values[(s["keyword"], s["spec"])] = s["value"].split()
    left, bottom, right, top = (number(x) for x in values[("HWMargins", "")])
    width = values[("ParamCustomPageSize", "Width")]
    height = values[("ParamCustomPageSize", "Height")]
    return ([top, left, bottom, right],
            [number(height[2]), number(width[2]), number(height[3]), number(width[3])])


def constraint_entry(value):
    words = value.split()
    entry = {}
    n = 0
    for word in words:
        if word.startswith("*"):
            n += 1
            entry["option-%d" % n] = word[1:]
        else:
            entry["choice-%d" % n] = word
    return entry


def forward_constraints(lines):
    """ppdc writes every pair twice, forward and reversed; the generator
    writes the reversed line itself."""
    seen = set()
    out = []
    for line in lines:
        pairs = re.findall(r"\*(\S+)(?: ([^*\s]+))?", line)
        key = frozenset(pairs)
        if key in seen:
            continue
        seen.add(key)
        out.append(constraint_entry(line))
    return out


def product(model, source_name, product_file):
    header = model["header"]
    attributes = []
    for s in header:
        entry = attribute(s)
        if s["keyword"] == "PPD-Adobe":
            entry["comment"] = ("PPD file for %s, written by ppdforge from %s" %
                                (next(h["value"] for h in header if h["keyword"] == "ModelName"),
                                 product_file))
        attributes.append(entry)
    for s in model["custom"]:
        fmt = CUSTOM_SIZE_FORMATS.get((s["keyword"], s["spec"]))
        if s["keyword"] == "CustomPageSize":
            attributes.append(attribute(s, "APPDCustomPageSizeGenerator", value_type=0))
        elif fmt:
            attributes.append(attribute(s, "APPDCustomPageSizeGenerator", value=fmt))
        else:
            attributes.append(attribute(s, "APPDCustomPageSizeGenerator"))
    for s in model["fonts"]:
        attributes.append(attribute(s))

    media = []
    default_name = None
    for keyword, name in model["media"]:
        media.append(media_entry(keyword, name, model["geometry"][keyword]))
        if keyword == model["default_size"]:
            default_name = name

    options = []
    for o in model["options"]:
        entry = {"code-name": o["keyword"], "user-name": o["text"]}
        if o["group"] is not None:
            entry["group-name"] = o["group"][0]
        if o["ui"] == "Boolean":
            entry["ui-type"] = "Boolean"
        elif o["ui"] != "PickOne":
            raise ValueError("unexpected UI type %s" % o["ui"])
        entry["default-choice"] = o["default"]
        entry["choices"] = [{"id": c, "name": t, "code": code} for c, t, code in o["choices"]]
        options.append(entry)

    margins, limits = custom_size_numbers(model["custom"])
    return {
        "CUPSVersion": 0x240,
        "features": {"supportsCustomPageSize": True},
        "customPageSizeMargins": margins,
        "customPageSizeConstraints": limits,
        "options": {"QVPaperInfo": {"defaultChoice": default_name, "values": media}},
        "attributesGenerationInfo": attributes,
        "optionsGenerationInfo": options,
        "cupsUIResolversGenerationInfo": RESOLVERS,
        "constraintsGenerationInfo": forward_constraints(model["constraints"]) + CUPS_CONSTRAINTS,
    }


def read_strings(path):
    pairs = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            m = re.match(r'^"((?:[^"\\]|\\.)*)" = "((?:[^"\\]|\\.)*)";$', line.rstrip("\n"))
            if m:
                pairs.append((m.group(1), m.group(2)))
    return pairs


def write_bundle(anchor, model, out_dir):
    """The anchor's catalogs, one NAME.lproj per language, plus the keys that
    only ppdforge uses: the group keywords (a group's text is its keyword) and
    the page size options' own names. An English table gives the groups their
    English texts."""
    extra_keys = {"Paper Size": "Media Size", "PageRegion": "Media Size"}
    for o in model["options"]:
        if o["group"] is not None:
            extra_keys[o["group"][0]] = o["group"][1]
    root = os.path.join(out_dir, BUNDLE)
    if os.path.isdir(root):
        shutil.rmtree(root)
    english = ['/* Acme LaserPro PPD strings, en: texts of keywords that are not English */']
    for key, text in extra_keys.items():
        english.append('"%s" = "%s";' % (key, text))
    os.makedirs(os.path.join(root, "en.lproj"))
    with open(os.path.join(root, "en.lproj", "Localizable.strings"), "w", encoding="utf-8") as f:
        f.write("\n".join(english) + "\n")
    for language in LANGUAGES:
        source = os.path.join(anchor, "strings", "acme_%s.strings" % language)
        with open(source, encoding="utf-8") as f:
            text = f.read()
        table = dict(read_strings(source))
        lines = ["", "/* Keys of ppdforge's own texts */"]
        for key, english_text in extra_keys.items():
            if english_text not in table:
                raise KeyError("%s: no translation of %r" % (source, english_text))
            lines.append('"%s" = "%s";' % (key, table[english_text]))
        folder = os.path.join(root, "%s.lproj" % language)
        os.makedirs(folder)
        with open(os.path.join(folder, "Localizable.strings"), "w", encoding="utf-8") as f:
            f.write(text.rstrip("\n") + "\n" + "\n".join(lines) + "\n")


def run_ppdc(ppdc, drv, out_dir):
    subprocess.run([ppdc, "-d", out_dir, drv], check=True, cwd=os.path.dirname(drv),
                   stdout=subprocess.DEVNULL)


def write_plist(path, value):
    with open(path, "wb") as f:
        plistlib.dump(value, f, fmt=plistlib.FMT_XML, sort_keys=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--anchor", default=DEFAULT_ANCHOR)
    parser.add_argument("--ppdc", default="ppdc")
    args = parser.parse_args()
    anchor = os.path.abspath(args.anchor)

    big_dir = os.path.join(REPO, "examples", "big")
    big20_dir = os.path.join(REPO, "examples", "big20")
    with tempfile.TemporaryDirectory() as tmp:
        one = os.path.join(tmp, "big")
        twenty = os.path.join(tmp, "big20")
        run_ppdc(args.ppdc, os.path.join(anchor, "big.drv"), one)
        run_ppdc(args.ppdc, os.path.join(anchor, "big20.drv"), twenty)

        os.makedirs(big_dir, exist_ok=True)
        (ppd,) = sorted(os.listdir(one))
        stem = os.path.splitext(ppd)[0]
        model = read_model(os.path.join(one, ppd))
        write_plist(os.path.join(big_dir, stem + ".plist"),
                    product(model, ppd, "examples/big/%s.plist" % stem))
        write_bundle(anchor, model, big_dir)

        if os.path.isdir(big20_dir):
            for name in os.listdir(big20_dir):
                if name.endswith(".plist"):
                    os.remove(os.path.join(big20_dir, name))
        os.makedirs(big20_dir, exist_ok=True)
        ppds = sorted(os.listdir(twenty))
        for ppd in ppds:
            stem = os.path.splitext(ppd)[0]
            write_plist(os.path.join(big20_dir, stem + ".plist"),
                        product(read_model(os.path.join(twenty, ppd)), ppd,
                                "examples/big20/%s.plist" % stem))
    print("wrote examples/big (1 product, %d media) and examples/big20 (%d products)" %
          (len(model["media"]), len(ppds)))


if __name__ == "__main__":
    sys.exit(main())
