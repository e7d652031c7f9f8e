"""The text of a settings file."""

KEY = r"HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly\2.0"


def registry(*values):
    """With these values: (sub-key, name, value) each, a number or what the file has for it."""
    sections = {}
    for key, name, value in values:
        data = f"dword:{value:08x}" if isinstance(value, int) else value
        path = f"{KEY}\\{key}" if key else KEY
        sections.setdefault(path, []).append(f'"{name}"={data}\r\n')
    return "REGEDIT4\r\n" + "".join(f"\r\n[{path}]\r\n" + "".join(lines)
                                    for path, lines in sections.items())
