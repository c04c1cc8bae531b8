"""Which folder of the project may use which: the one table that both checks read."""

# The folders of core/ in the order of the picture in README.md, each with those it may include.
CORE = {
    "text": [],
    "files": [],
    "fontfile": ["text"],
    "assessment": ["text", "fontfile"],
    "library": ["text", "files", "fontfile"],
    "pdf": ["text", "fontfile", "assessment"],
    "listing": ["text", "files", "fontfile", "assessment", "library", "pdf"],
    "coding": ["text", "fontfile", "assessment", "pdf"],
    "notes": ["text", "files"],
    "export": ["text", "files", "fontfile", "assessment", "pdf", "notes"],
}

# The libraries of the desktop application, each with the folders that it may include.
APP = {
    "model": ["text", "files", "fontfile", "assessment", "library", "pdf", "notes", "export", "listing"],
    "update": ["text", "fontfile", "assessment"],
    "ui": [
        "text",
        "files",
        "fontfile",
        "assessment",
        "library",
        "pdf",
        "notes",
        "export",
        "listing",
        "model",
        "update",
    ],
}

LIBRARIES = {**CORE, **APP}

# What stands on core/ besides. Nothing in core/ includes any of it.
FACES = {
    "cli": [*CORE, "reader"],
    "reader": ["text", "files", "fontfile", "library", "pdf"],
    "app/main.cpp": [*CORE, "reader", *APP],
}

# Code that is not shipped, and may include everything.
WORKSHOP = ["bench", "fuzz", "tests"]

# Where the headers of each third-party library may appear, so that exchanging one touches one
# place. The workshop builds its inputs with the same libraries and is not bound by this.
THIRD_PARTY = {
    "ICU": (r"unicode/.*", ["core/text/*"]),
    "fontconfig": (
        r"fontconfig/.*",
        [
            "core/library/InstalledFonts.cpp",
            "core/export/ReportFonts.cpp",
            "core/export/PangoModule.cpp",
        ],
    ),
    "FreeType": (
        r"ft2build\.h|freetype/.*",
        [
            "core/library/FreeTypeFaces.cpp",
            "core/library/FreeTypeMemory.h",
            "core/export/EmbeddedFont.cpp",
        ],
    ),
    "Pango": (r"pango/.*", ["core/export/PangoModule.cpp"]),
    "zlib": (r"zlib\.h", ["core/library/Inflate.cpp", "core/pdf/Inflater.cpp"]),
    "libdeflate": (r"libdeflate\.h", ["core/pdf/Inflater.cpp", "core/export/PDFFile.cpp"]),
    "brotli": (r"brotli/.*", ["core/library/WOFF2.cpp"]),
    "libqpdf": (r"qpdf/.*", ["core/pdf/QPDF*"]),
    "GnuTLS": (r"gnutls/.*", ["core/pdf/GnuTLSOnDemand.cpp"]),
    "nlohmann-json": (r"nlohmann/.*", ["core/coding/RecordCoding.cpp", "core/notes/NotesJson.cpp"]),
    "CLI11": (r"CLI/.*", ["cli/Options.cpp"]),
    "Qt's core": (
        r"Q(ByteArray|ByteArrayView|CoreApplication|DateTime|Event|EventLoop|List|Object|Pointer|Settings"
        r"|StandardPaths|String|StringList|SysInfo|Thread|ThreadPool|Timer|Url|Uuid|Variant|XmlStreamReader)",
        ["app/*"],
    ),
    "Qt's network": (r"QNetwork\w+", ["app/update/*"]),
    "libsodium": (r"sodium\.h", ["app/update/FeedSignature.cpp"]),
    "Qt's windows": (r"Q[A-Z]\w+", ["app/ui/*", "app/main.cpp"]),
    "GoogleTest": (r"g(test|mock)/.*", ["tests"]),
    "Google Benchmark": (r"benchmark/.*", ["bench"]),
}

# Folders of pure functions: bytes and records in, records out. They meet no file and no thread.
PURE = ["core/text", "core/fontfile", "core/assessment", "core/coding"]
EDGE_HEADERS = [
    "atomic",
    "condition_variable",
    "cstdio",
    "filesystem",
    "fstream",
    "future",
    "iostream",
    "mutex",
    "thread",
]
