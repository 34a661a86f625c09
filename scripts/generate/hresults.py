#!/usr/bin/env python3
"""Makes the table of HRESULT names and descriptions in Foundation/Core/Error/Internal/Tables.

    hresults.py DATA            writes the table from DATA/hresults.tsv
    hresults.py --check DATA    compares the committed table with what would be written

DATA/hresults.tsv holds 178 rows (name, value): the values of the OLE DB, security, storage and
transaction codes as public headers define them (oledberr.h, winerror.h, txdtc.h of mingw-w64). The
31 codes of the older cursor interfaces for bound controls are not in those headers; CURSOR below
has them from the public header of those interfaces, ocdb.h, where they count from 0x80040E00 for
errors and from 0x00040EC0 for successes. No two rows have the same value, which is checked.

A description is ours, but for three rows whose wording is fixed (FIXED). The transaction codes that
concern the coordinator's connections (0x8004D100 and above) are marked " (DTC)"; the cursor codes,
the other transaction codes and six names that say it all stand bare.

Python 3.9, standard library only; the output depends on nothing but the input.
"""
import argparse
import pathlib
import sys

OUTPUT = "Foundation/Core/Error/Internal/Tables/HResultTable.h"

CURSOR_ERRORS = """- - - BADCRITERIA BADENTRYID BADFRACTION - BADQUERYSPEC - - CANTCOERCE CANTLOCK -
    DATACHANGED - INVALIDINTERFACE LOCKFAILED - ROWTOOSHORT - SEEKKINDNOTSUPPORTED UPDATEINPROGRESS
    USEENTRYID STATEERROR BADFETCHINFO NOASYNC ENTRYIDOPEN BUFFERTOOSMALL""".split()
CURSOR_SUCCESSES = """BUFFERTOOSMALL CANCEL DATACHANGED ENDOFCURSOR ENDOFRESULTSET OPERATIONCANCELLED
    QUERYINTERFACE WORKINGASYNC - MOVEDTOFIRST CURRENTROWUNCHANGED ROWADDED ROWUPDATED
    ROWDELETED""".split()
CURSOR = {
    **{"DB_E_" + n: 0x80040E00 + i for i, n in enumerate(CURSOR_ERRORS) if n != "-"},
    **{"DB_S_" + n: 0x00040EC0 + i for i, n in enumerate(CURSOR_SUCCESSES) if n != "-"},
}

FIXED = {
    "DB_E_NOTABLE": "The specified table does not exist",
    "DB_E_BADACCESSORHANDLE": "Invalid accessor",
    "STG_E_PATHNOTFOUND": "The path %1 could not be found.",
}

BARE = {"DB_E_CANCELED", "DB_E_NOTREENTRANT", "DB_E_NOTSUPPORTED", "DB_E_INVALID",
        "DB_SEC_E_AUTH_FAILED", "DB_SEC_E_PERMISSIONDENIED"}

DESCRIPTIONS = {
    "DB_E_ABORTLIMITREACHED": "A resource limit stopped the execution; nothing was returned",
    "DB_E_ALREADYINITIALIZED": "The data source is initialized already",
    "DB_E_BADACCESSORFLAGS": "Invalid accessor flags",
    "DB_E_BADACCESSORTYPE": "The accessor is not a parameter accessor",
    "DB_E_BADBINDINFO": "Invalid binding information",
    "DB_E_BADBOOKMARK": "Invalid bookmark",
    "DB_E_BADCHAPTER": "Invalid chapter",
    "DB_E_BADCOLUMNID": "Invalid column identifier",
    "DB_E_BADCOMPAREOP": "Invalid comparison operator",
    "DB_E_BADCONVERTFLAG": "Invalid conversion flag",
    "DB_E_BADCOPY": "Not everything could be copied",
    "DB_E_BADDYNAMICERRORID": "The error number is none of this provider's",
    "DB_E_BADHRESULT": "An invalid HRESULT was given",
    "DB_E_BADINDEXID": "Invalid index name",
    "DB_E_BADINITSTRING": "The initialization string is malformed",
    "DB_E_BADLOOKUPID": "Invalid lookup identifier",
    "DB_E_BADORDINAL": "There is no column of that number",
    "DB_E_BADPARAMETERNAME": "There is no parameter of that name",
    "DB_E_BADPRECISION": "Invalid precision",
    "DB_E_BADPROPERTYVALUE": "Invalid value of a property",
    "DB_E_BADRECORDNUM": "Invalid record number",
    "DB_E_BADREGIONHANDLE": "Invalid region handle",
    "DB_E_BADSCALE": "Invalid scale",
    "DB_E_BADSOURCEHANDLE": "Invalid source handle",
    "DB_E_BADSTARTPOSITION": "The start position is outside the rowset",
    "DB_E_BADSTATUSVALUE": "Invalid status of a column or parameter",
    "DB_E_BADSTORAGEFLAG": "A storage flag is not supported",
    "DB_E_BADSTORAGEFLAGS": "Invalid storage flags",
    "DB_E_BADTABLEID": "Invalid table name",
    "DB_E_BADTYPE": "Invalid type",
    "DB_E_BADTYPENAME": "There is no type of that name",
    "DB_E_BADVALUES": "Invalid value",
    "DB_E_BOOKMARKSKIPPED": "The row of the bookmark is gone or does not match",
    "DB_E_BYREFACCESSORNOTSUPPORTED": "Accessors that pass by reference are not supported",
    "DB_E_CANTFETCHBACKWARDS": "The rowset cannot fetch backwards",
    "DB_E_CANTFILTER": "The requested filter cannot be set",
    "DB_E_CANTORDER": "The requested order cannot be set",
    "DB_E_CANTSCROLLBACKWARDS": "The rowset cannot scroll backwards",
    "DB_E_CANTTRANSLATE": "The command cannot be shown as text",
    "DB_E_CHAPTERNOTRELEASED": "A chapter is still in use",
    "DB_E_COLUMNUNAVAILABLE": "The column is not available",
    "DB_E_COMMANDNOTPERSISTED": "The command was not stored",
    "DB_E_CONCURRENCYVIOLATION": "The row was changed by somebody else",
    "DB_E_DATAOVERFLOW": "The value is out of the range of its type",
    "DB_E_DELETEDROW": "The row was deleted",
    "DB_E_DUPLICATECOLUMNID": "The column is named twice",
    "DB_E_DUPLICATEID": "The identifier exists already",
    "DB_E_DUPLICATEINDEXID": "The index exists already",
    "DB_E_DUPLICATETABLEID": "The table exists already",
    "DB_E_ERRORSOCCURRED": "Several errors occurred; each has a status of its own",
    "DB_E_GOALREJECTED": "None of the weighted goals is supported",
    "DB_E_INDEXINUSE": "The index is in use",
    "DB_E_INTEGRITYVIOLATION": "The value violates the integrity rules of its column or table",
    "DB_E_INVALIDTRANSITION": "That change of state is not possible",
    "DB_E_MAXPENDCHANGESEXCEEDED": "Too many rows have changes that are not stored yet",
    "DB_E_MISMATCHEDPROVIDER": "The object belongs to another provider",
    "DB_E_MULTIPLESTATEMENTS": "Commands of several statements are not supported",
    "DB_E_MULTIPLESTORAGE": "Only one storage object can be open at a time",
    "DB_E_NOAGGREGATION": "The object cannot be made part of another one",
    "DB_E_NOCOLUMN": "The specified column does not exist",
    "DB_E_NOINDEX": "The specified index does not exist",
    "DB_E_NOLOCALE": "The locale is not supported",
    "DB_E_NONCONTIGUOUSRANGE": "The rows do not follow one another",
    "DB_E_NOPROVIDERSREGISTERED": "No provider is registered",
    "DB_E_NOQUERY": "There is no query to work on",
    "DB_E_NOTASUBREGION": "The region does not lie within the other one",
    "DB_E_NOTPREPARED": "The command was not prepared",
    "DB_E_NULLACCESSORNOTSUPPORTED": "Accessors without bindings are not supported",
    "DB_E_OBJECTCREATIONLIMITREACHED": "No more objects of this kind can be made",
    "DB_E_PARAMUNAVAILABLE": "The parameter information is not available",
    "DB_E_PENDINGCHANGES": "Changes that are not stored yet stand in the way",
    "DB_E_PENDINGINSERT": "The new row is not stored yet",
    "DB_E_READONLYACCESSOR": "The accessor is for reading only",
    "DB_E_ROWLIMITEXCEEDED": "More rows would be held than allowed",
    "DB_E_ROWSETINCOMMAND": "The command already has an open rowset",
    "DB_E_ROWSNOTRELEASED": "Rows are still in use",
    "DB_E_TABLEINUSE": "The table is in use",
    "DB_E_UNSUPPORTEDCONVERSION": "The conversion is not supported",
    "DB_E_WRITEONLYACCESSOR": "The accessor is for writing only",
    "DB_S_ASYNCHRONOUS": "The operation goes on by itself",
    "DB_S_BADROWHANDLE": "One of the row handles is invalid",
    "DB_S_BUFFERFULL": "The buffer is full; more rows remain",
    "DB_S_COLUMNSCHANGED": "The columns are others after the query was repeated",
    "DB_S_DELETEDROW": "One of the rows was deleted",
    "DB_S_ERRORSOCCURRED": "Done in part; each error has a status of its own",
    "DB_S_ERRORSRETURNED": "Done in part; the errors were returned",
    "DB_S_LOCKUPGRADED": "A stricter lock than requested was taken",
    "DB_S_MULTIPLECHANGES": "More than one row was changed",
    "DB_S_PARAMUNAVAILABLE": "A parameter is of no use here",
    "DB_S_PROPERTIESCHANGED": "Properties were changed, as far as they could be",
    "DB_S_STOPLIMITREACHED": "A resource limit stopped the execution; the results so far remain",
    "DB_S_TOOMANYCHANGES": "Too many changes to tell each one",
    "DB_S_UNWANTEDPHASE": "No more notices of this phase are wanted",
    "DB_S_UNWANTEDREASON": "No more notices of this reason are wanted",
    "MD_E_BADCOORDINATE": "Invalid coordinate on an axis",
    "MD_E_BADTUPLE": "Invalid tuple",
    "MD_E_INVALIDAXIS": "The axis does not exist",
    "MD_E_INVALIDCELLRANGE": "Invalid range of cells",
    "SEC_E_BADTRUSTEEID": "Invalid trustee",
    "SEC_E_INVALIDACCESSENTRY": "Invalid access entry",
    "SEC_E_INVALIDACCESSENTRYLIST": "Invalid list of access entries",
    "SEC_E_INVALIDOBJECT": "Invalid object",
    "SEC_E_INVALIDOWNER": "The trustee cannot be the owner",
    "SEC_E_NOMEMBERSHIPSUPPORT": "Trustees have no members here",
    "SEC_E_NOOWNER": "The object has no owner",
    "SEC_E_NOTRUSTEEID": "There is no such trustee",
    "STG_E_FILEALREADYEXISTS": "The file %1 exists already.",
    "STG_E_FILENOTFOUND": "The file %1 could not be found.",
    "STG_E_INVALIDHEADER": "The header of the storage is invalid.",
    "STG_E_OLDDLL": "The storage is of a newer format than this system reads.",
    "STG_E_OLDFORMAT": "The storage is of an older format.",
    **FIXED,
}


def text_of(name, value):
    if 0x8004D100 <= value < 0x8004D200:
        return name + " (DTC)"
    if name.startswith("XACT_") or name in CURSOR or name in BARE:
        return name
    return f"{name} ({DESCRIPTIONS[name]})"


def read(folder):
    lines = (folder / "hresults.tsv").read_text(encoding="ascii").splitlines()
    rows = {name: int(value, 16) for name, value in (line.split("\t") for line in lines if line)}
    rows.update(CURSOR)
    by_value = sorted((value, text_of(name, value)) for name, value in rows.items())
    values = [value for value, _ in by_value]
    texts = [text for _, text in by_value]
    assert len(set(values)) == len(rows) == 209, "values are unique, 209 of them"
    assert sum(" (DTC)" in text for text in texts) == 17
    assert sum(" " not in text for text in texts) == 78
    assert not set(DESCRIPTIONS) - set(rows), "descriptions without a row"
    return by_value


def table(rows):
    blob, offsets = "", []
    for _, text in rows:
        offsets.append(len(blob))
        blob += text + "\0"
    assert len(blob) < 0x10000
    out = ["// Generated by scripts/generate/hresults.py from hresults.tsv and the cursor codes of ocdb.h.",
           f"// Do not edit. {len(rows)} HRESULT values in ascending order, each with the start of its",
           "// text in kHResultTexts, where every text ends in a zero.",
           "#ifndef FOUNDATION_CORE_ERROR_INTERNAL_TABLES_HRESULTTABLE_H",
           "#define FOUNDATION_CORE_ERROR_INTERNAL_TABLES_HRESULTTABLE_H", "",
           "#include <cstdint>", "", "namespace zelkor::detail {", "",
           "struct HResultRow {", "    std::uint32_t value;", "    std::uint16_t text;", "};", "",
           "inline constexpr HResultRow kHResults[] = {"]
    cells = [f"{{0x{value:08X}, {offset}}}" for (value, _), offset in zip(rows, offsets)]
    out += ["    " + ", ".join(cells[i:i + 4]) + "," for i in range(0, len(cells), 4)]
    out += ["};", "", "inline constexpr char kHResultTexts[] ="]
    out += [f'    "{text}\\0"' for _, text in rows]
    out[-1] += ";"
    out += ["", "}  // namespace zelkor::detail", "", "#endif", ""]
    return "\n".join(out)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true")
    parser.add_argument("data", type=pathlib.Path)
    arguments = parser.parse_args()
    path = pathlib.Path(__file__).resolve().parents[2] / OUTPUT
    text = table(read(arguments.data))
    if not arguments.check:
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="ascii")
    elif path.read_text(encoding="ascii") != text:
        sys.exit(f"{OUTPUT} differs from what its inputs give")


if __name__ == "__main__":
    main()
