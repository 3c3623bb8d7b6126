"""Pictures as trees of SVG elements, so that the text in them is always escaped."""

import re
import xml.etree.ElementTree as ET

SVG_NAMESPACE = "http://www.w3.org/2000/svg"

# Each colour with its counterpart on a dark ground. Viewers that know no media query keep the
# first; none knows what it would do with variables.
COLOURS = {
    "ground": ("fill", "#ffffff", "#16181c"),
    "ink": ("fill", "#1d2128", "#e6e8ec"),
    "faint": ("fill", "#5c6470", "#9aa2ae"),
    "rule": ("stroke", "#d5d9df", "#3a4049"),
    "axis": ("stroke", "#7d8591", "#7d8591"),
    "white": ("fill", "#2468b4", "#5b9ee6"),
    "white-end": ("fill", "#94bce8", "#2c5688"),
    "black": ("fill", "#c4590f", "#ee8a3e"),
    "black-end": ("fill", "#f0b184", "#8a4c1e"),
    "net": ("stroke", "#1d2128", "#e6e8ec"),
    "middle": ("fill", "#4d5561", "#b4bbc6"),
    "end": ("fill", "#b9bfc8", "#565e6a"),
    "light": ("fill", "#ece7db", "#b9b3a5"),
    "dark": ("fill", "#b3a78f", "#7c7463"),
    "alarm": ("fill", "#b3261e", "#ff8a80"),
}
FONTS = "system-ui, 'Segoe UI', 'Helvetica Neue', 'DejaVu Sans', Arial, sans-serif"
# What no XML may contain, not even escaped.
FORBIDDEN = re.compile("[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")


def style_sheet():
    """The rules of the pictures; without signs that would have to be escaped."""
    rules = [
        f"svg {{ font-family: {FONTS}; font-size: 12px; font-variant-numeric: tabular-nums; }}",
        ".strong { font-weight: 600; }",
        ".large { font-size: 30px; font-weight: 600; }",
        ".small { font-size: 10.5px; }",
        ".tiny { font-size: 9.5px; }",
        ".right { text-anchor: end; }",
        ".middle-anchor { text-anchor: middle; }",
    ]
    rules += [f".{name} {{ {kind}: {light}; }}" for name, (kind, light, _) in COLOURS.items()]
    dark = [f".{name} {{ {kind}: {dark}; }}" for name, (kind, _, dark) in COLOURS.items()]
    return "\n".join([*rules, "@media (prefers-color-scheme: dark) {", *dark, "}"])


def add(parent, tag, text=None, **attributes):
    """Appends an element; `kind` is its class, and an underscore a hyphen."""
    named = {}
    for name, value in attributes.items():
        value = f"{value:.2f}".rstrip("0").rstrip(".") if isinstance(value, float) else str(value)
        named["class" if name == "kind" else name.replace("_", "-")] = value
    element = ET.SubElement(parent, tag, named)
    if text is not None:
        element.text = FORBIDDEN.sub("\N{REPLACEMENT CHARACTER}", text)
    return element


def picture(width, height, title):
    """An empty picture with its ground and its style."""
    root = ET.Element(
        "svg",
        {
            "xmlns": SVG_NAMESPACE,
            "viewBox": f"0 0 {width:g} {height:g}",
            "width": f"{width:g}",
            "height": f"{height:g}",
            "role": "img",
        },
    )
    add(root, "title", title)
    add(root, "style", style_sheet())
    add(root, "rect", kind="ground", width=width, height=height)
    return root


def as_text(root):
    return ET.tostring(root, encoding="unicode") + "\n"
