# The manual page lumvik.1. A section of options that commands share is written out at the first of them.

BEGIN {
  summary = about[""]
  sub(/\.$/, "", summary)
  printf ".TH LUMVIK 1 \"\" \"lumvik %s\" \"User Commands\"\n", version
  printf ".SH NAME\nlumvik \\- %s\n", roff(tolower(substr(summary, 1, 1)) substr(summary, 2))
  print ".SH SYNOPSIS\n.nf"
  for (p = 1; p <= page_count; ++p) print roff(usage[pages[p]])
  print ".fi\n.SH DESCRIPTION"
  print roff(about[""] " A value that is written NAME:A..B lies between A and B.")
  print ".SH OPTIONS"
  write_entries("")
  print ".SH COMMANDS"
  for (p = 2; p <= page_count; ++p) {
    print ".SS " roff(usage[pages[p]])
    print roff(about[pages[p]])
    write_entries(pages[p])
  }
  print ".SH EXIT STATUS"
  print ".TP\n0\nsuccess"
  print ".TP\n1\na file, or one of several, could not be read, developed or written"
  print ".TP\n2\nwrong usage; no file was touched"
}

function write_entries(page, i, heading, before, elsewhere) {
  before = elsewhere = ""
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == "Subcommands" || (page != "" && names[page, i] ~ /--help/)) continue
    heading = section[page, i]
    if (heading != before && is_told(page, heading)) {
      elsewhere = elsewhere (elsewhere == "" ? "" : ", ") heading
    } else if (told[heading, options(page, heading)] == page) {
      if (heading != before && heading !~ /^(Options|Positionals)$/) print ".PP\n.B " roff(heading)
      print ".TP\n" label(page, i) "\n" roff(text[page, i])
    }
    before = heading
  }
  if (elsewhere != "") print ".PP\nIt also has the options of these sections, told above: " roff(elsewhere) "."
}

# Whether an earlier page has told a section of this heading and these options; if none has, this one will.
function is_told(page, heading, key) {
  key = options(page, heading)
  if ((heading, key) in told) return told[heading, key] != page
  told[heading, key] = page
  return 0
}

function options(page, heading, i, all) {
  if (heading ~ /^(Options|Positionals)$/) return page
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == heading) all = all names[page, i] value[page, i] text[page, i] "\n"
  }
  return all
}

function label(page, i, all) {
  all = "\\fB" roff(names[page, i]) "\\fR"
  gsub(/, /, "\\fR, \\fB", all)
  if (value[page, i] != "") all = all " \\fI" roff(value[page, i]) "\\fR"
  return all (required[page, i] && names[page, i] ~ /^-/ ? " (required)" : "")
}

function roff(words) {
  gsub(/\\/, "\\e", words)
  gsub(/-/, "\\-", words)
  if (words ~ /^[.']/) words = "\\&" words
  return words
}
