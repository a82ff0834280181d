# Makes the manual page corvane-config(1) from docs/corvane-config.md: awk -v version=0.1.0 -f man-page.awk FILE
# Its usage and options come from the help text at the end of that page.

function escaped(text) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  gsub(/'/, "\\(aq", text)
  return (text ~ /^[.]/ ? "\\&" : "") text
}

# A line of prose: links become their text, and what is between backticks bold.
function prose(line,   parts, count, i, text, link) {
  while (match(line, /\[[^]]*\]\([^)]*\)/)) {
    link = substr(line, RSTART + 1, RLENGTH - 1)
    sub(/\].*/, "", link)
    line = substr(line, 1, RSTART - 1) link substr(line, RSTART + RLENGTH)
  }
  count = split(escaped(line), parts, "`")
  for (i = 1; i <= count; ++i)
    text = text (i % 2 ? parts[i] : "\\fB" parts[i] "\\fR")
  return text
}

function put(line) { body = body line "\n" }

function item(term, text) { put(".TP\n" term "\n" text) }

function table_row(line,   cells) {
  if (line ~ /^\|-/) { in_table = 1; return }
  split(line, cells, / *\| */)
  if (in_table) item(prose(cells[2]), prose(cells[3])) # or the heads of the columns
}

function help_line(line) {
  if (line ~ /corvane-config .*COMMAND/) usage = usage substr(line, index(line, "corvane")) "\n"
  if (line ~ /^Options:/) put(".SH OPTIONS")
  if (line ~ /^  -/) {
    sub(/^ */, "", line)
    text = line
    sub(/   *.*/, "", line)
    sub(/^.*   */, "", text)
    item("\\fB" escaped(line) "\\fR", prose(text))
  }
}

/^```/ {
  in_block = !in_block
  if (!in_help) put(in_block ? ".PP\n.RS 4\n.nf" : ".fi\n.RE")
  next
}
in_block && in_help { help_line($0); next }
in_block { put(escaped($0)); next }
/^# / { next }
/^## Help/ { in_help = 1; next }
/^## / { put(".SH " toupper(substr($0, 4))); next }
/^### / { put(".SS " prose(substr($0, 5))); next }
/^\|/ { table_row($0); next }
/^$/ { in_table = 0; after_blank = 1; next }
!summary { summary = $0; next }
{
  if (after_blank && body !~ /\.S[HS] [^\n]*\n$/) put(".PP")
  after_blank = 0
  put(prose($0))
}

END {
  summary = tolower(substr(summary, 1, 1)) substr(summary, 2)
  sub(/\.$/, "", summary)
  print ".\\\" Made from docs/corvane-config.md."
  print ".TH CORVANE\\-CONFIG 1 \"\" \"corvane " version "\" \"User Commands\""
  print ".SH NAME\ncorvane\\-config \\- " escaped(summary) "\n.SH SYNOPSIS"
  count = split(usage, forms, "\n")
  for (i = 1; i < count; ++i) print (i > 1 ? ".br\n" : "") prose(forms[i])
  printf ".SH DESCRIPTION\n%s", body
}
