# Generates the manual page lumvik.1. Sections shared by several commands are listed with the first of them.

BEGIN {
  summary = about[""]
  sub(/\.$/, "", summary)
  printf ".TH LUMVIK 1 \"\" \"lumvik %s\" \"User Commands\"\n", version
  printf ".SH NAME\nlumvik \\- %s\n", roff(tolower(substr(summary, 1, 1)) substr(summary, 2))
  print ".SH SYNOPSIS\n.nf"
  for (p = 1; p <= page_count; ++p) print roff(usage[pages[p]])
  print ".fi\n.SH DESCRIPTION"
  print roff(about[""] " Values written as NAME:A..B must be in the range from A to B.")
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
  print ".TP\n1\na file could not be read, developed or written"
  print ".TP\n2\nusage error; no file was touched"
}

function write_entries(page, i, heading, before, elsewhere) {
  before = elsewhere = ""
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == "Subcommands" || (page != "" && names[page, i] ~ /--help/)) continue
    heading = section[page, i]
    if (heading != before && is_listed(page, heading)) {
      elsewhere = elsewhere (elsewhere == "" ? "" : ", ") heading
    } else if (listed[heading, options(page, heading)] == page) {
      if (heading != before && heading !~ /^(Options|Positionals)$/) print ".PP\n.B " roff(heading)
      print ".TP\n" label(page, i) "\n" roff(text[page, i])
    }
    before = heading
  }
  if (elsewhere != "") print ".PP\nAlso takes the options described above under: " roff(elsewhere) "."
}

# Whether an earlier page lists a section with this heading and these options. If not, records this page.
function is_listed(page, heading, key) {
  key = options(page, heading)
  if ((heading, key) in listed) return listed[heading, key] != page
  listed[heading, key] = page
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
