"""Compares the C# declarations of functions and structs with the headers.

    check_declarations.py INCLUDE_FOLDER CSHARP_FOLDER TESTS

Every function of lumvik.h and lumvik_host.h must be declared with the types that its C declaration maps to, every struct
must have the same fields in the same order, and TESTS, a C# file, must call every function of lumvik.h. No text may pass
through the ANSI code page; that of Mono is UTF-8, so running the tests would not show it.
"""

import pathlib
import re
import sys

TYPES = {
    "void": "void", "int": "int", "float": "float", "double": "double", "int32_t": "int", "uint32_t": "uint",
    "uint64_t": "ulong", "size_t": "UIntPtr", "void*": "IntPtr", "const void*": "byte[]", "const char*": "byte[]",
    "char*": "byte[]", "char**": "out IntPtr", "uint8_t*": "byte[]", "const uint8_t*": "byte[]",
    "uint8_t**": "out IntPtr", "const float*": "float[]", "float*": "out float", "int*": "out int",
    "int32_t*": "out int", "uint32_t*": "uint[]", "uint64_t*": "out ulong", "size_t*": "out UIntPtr",
    "EngineContext*": "EngineContext", "ExifInfo*": "out ExifInfo", "lumvik_host_status": "Status",
    "lumvik_host_photo*": "PhotoHandle", "lumvik_host_photo**": "out PhotoHandle",
    "lumvik_host_settings*": "SettingsHandle", "lumvik_host_settings**": "out SettingsHandle",
    "lumvik_host_callback": "FrameCallback",
}
# Where the type alone does not decide.
PARAMETERS = {
    ("float*", "slots"): "float[]", ("float*", "points"): "float[]",
    # Pixels may go straight to a bitmap of the host.
    ("uint8_t*", "pixels"): "IntPtr", ("uint8_t*", "mask"): "IntPtr",
}
RESULTS = {"const char*": "IntPtr"}
ANSI = re.compile(r"\w*(?:Ansi|Auto|LPStr|LPTStr|BStr)\b|Encoding\.Default")
# A SafeHandle passes its value when it releases the object.
RELEASING = {"lumvik_destroy_context", "lumvik_host_close", "lumvik_host_settings_close"}


def camel_case(name):
    return "".join(part.capitalize() for part in name.removeprefix("lumvik_host_").split("_"))


def mapped(c_type, name=None):
    if (c_type, name) in PARAMETERS:
        return PARAMETERS[c_type, name]
    struct = re.fullmatch(r"(?:const )?(lumvik_host_\w+)\*", c_type)
    if c_type not in TYPES and struct:
        return "ref " + camel_case(struct[1])
    return TYPES[c_type]


def split(declaration):
    """The type and the name of "const char* path"."""
    c_type, name = re.fullmatch(r"(.*[ *])(\w+)", declaration.strip()).groups()
    return re.sub(r"\s+", " ", c_type).strip(), name


def functions(header, macro):
    for result, name, parameters in re.findall(rf"^{macro} ([^(]*?)(\w+)\(([^)]*)\);", header, re.M | re.S):
        result = result.strip()
        arguments = []
        for parameter in [] if parameters == "void" else parameters.split(","):
            c_type, parameter_name = split(parameter)
            arguments.append("IntPtr" if name in RELEASING else mapped(c_type, parameter_name))
        yield name, (RESULTS.get(result) or mapped(result), arguments)


def declared_functions(source):
    for result, name, parameters in re.findall(r"static extern ([\w\[\]]+) (\w+)\(([^)]*)\);", source):
        arguments = [parameter.strip() for parameter in parameters.split(",") if parameter.strip()]
        yield name, (result, [argument.rsplit(" ", 1)[0] for argument in arguments])


def structs(header):
    for name, body in re.findall(r"^typedef struct (\w+) \{\n(.*?)^\} \1;", header, re.M | re.S):
        fields = []
        for field in re.findall(r"^  (\w.*?);", body, re.M):
            array = re.fullmatch(r"(\w+) (\w+)\[(\d+)\]", field)
            if array:
                fields.append((array[2], {"char": "byte[]", "uint32_t": "uint[]"}[array[1]], array[3]))
            else:
                c_type, field_name = split(field)
                fields.append((field_name, "IntPtr" if c_type.endswith("*") else mapped(c_type), ""))
        yield camel_case(name) if name.startswith("lumvik_host_") else name, fields


def declared_structs(source):
    for name, body in re.findall(r"\[StructLayout\(LayoutKind\.Sequential\)\]\s*public struct (\w+) \{\n(.*?)^  \}",
                                 source, re.M | re.S):
        array = r"(?:\[MarshalAs\(UnmanagedType\.ByValArray, SizeConst = (\d+)\)\]\s*)?"
        pattern = rf"^    {array}public ([\w\[\]]+) (\w+);"
        yield name, [(field, c_type, size) for size, c_type, field in re.findall(pattern, body, re.M)]


def enumerators(text, pattern):
    return {name.replace("_", "").lower(): int(value) for name, value in re.findall(pattern, text)}


def compare(what, expected, declared):
    """The number of differences."""
    wrong = 0
    for name in sorted(expected.keys() | declared.keys()):
        if expected.get(name) != declared.get(name):
            print(f"{what} {name}: {declared.get(name)} in C#, {expected.get(name)} by the header")
            wrong += 1
    return wrong


def main():
    include, folder, tests = map(pathlib.Path, sys.argv[1:])
    source = "".join(path.read_text(encoding="utf-8") for path in sorted(folder.glob("*.cs")))
    engine, host = (include.joinpath(name).read_text(encoding="utf-8") for name in ("lumvik.h", "lumvik_host.h"))
    engine_functions = dict(functions(engine, "LUMVIK_API"))
    expected = {**engine_functions, **dict(functions(host, "LUMVIK_HOST_API"))}
    expected_structs = {**dict(structs(engine)), **dict(structs(host))}
    if len(engine_functions) != 68 or len(expected_structs) != 11:
        sys.exit(f"{len(engine_functions)} functions and {len(expected_structs)} structs: a header was not understood")
    wrong = compare("function", expected, dict(declared_functions(source)))
    wrong += compare("struct", expected_structs, dict(declared_structs(source)))
    statuses = re.search(r"enum Status \{(.*?)\}", source, re.S)
    wrong += compare("status",
                     enumerators(host[host.index("enum lumvik_host_status"):host.index("} lumvik_host_status")],
                                 r"LUMVIK_HOST_(\w+) = (\d+)"),
                     enumerators(statuses[1] if statuses else "", r"(\w+) = (\d+)"))
    for found in ANSI.findall(source):
        print(f"{found} uses the ANSI code page on Windows")
        wrong += 1
    calls = tests.read_text(encoding="utf-8")
    for name in sorted(engine_functions):
        if not re.search(rf"\b{name}\(", calls):
            print(f"{tests.name} does not call {name}")
            wrong += 1
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
