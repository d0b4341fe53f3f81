# The table of a run, from lines NAME/PROGRAM/KEYS/TOPICS,VALUE: one row for each figure, with the bar that kavsetup
# wants to meet.
{ figure[$1] = $2 }

function of(name, program, rest) { return figure[name "/" program rest] }

# Figure and ratio of another program; "-" for what was not measured.
function beside(name, program, rest, digits,   other) {
  other = of(name, program, rest)
  return other == "" ? "-" : sprintf("%.*f (%.1f)", digits, other, other / of(name, "kavsetup", rest))
}

# `met`: 1, 0, or "" where there is no bar. What was not measured has no row.
function row(label, name, rest, digits, bar, met,   ours, bare) {
  ours = of(name, "kavsetup", rest)
  if (ours == "") return
  bare = of(name, "lines", rest) == "" ? "bare" : "lines"
  printf "| %s | %.*f | %s | %s | %s | %s | %s | %s | %s | %s |\n", label, digits, ours,
         beside(name, bare, rest, digits), beside(name, "inih", rest, digits), beside(name, "GKeyFile", rest, digits),
         beside(name, "SimpleIni", rest, digits), beside(name, "iniparser", rest, digits),
         beside(name, "dialog", rest, digits), bar, met == "" ? "" : met ? "yes" : "NO"
}

# The rows of one operation on all files.
function rows(label, name, digits, bar,   topics, keys, rest, ours, met) {
  for (topics = 1; topics <= 100; topics *= 10) {
    for (keys = 100; keys <= 10000; keys *= 10) {
      rest = "/" keys "/" topics
      ours = of(name, "kavsetup", rest)
      met = name == "load"     ? of(name, "inih", rest) >= 1.5 * ours && of(name, "GKeyFile", rest) >= 2 * ours \
            : name == "memory" ? ours <= of(name, "lines", rest) \
            : name == "write"  ? ours < of(name, "GKeyFile", rest) \
            : name == "lookups" ? ours <= 500 : ""
      row(label ", " keys " keys, " topics (topics == 1 ? " topic" : " topics"), name, rest, digits, bar, met)
    }
  }
}

# The greatest growth of the cost when the file grows tenfold.
function growth(name,   topics, keys, ratio, worst) {
  for (topics = 1; topics <= 100; topics *= 10) {
    for (keys = 100; keys <= 1000; keys *= 10) {
      ratio = of(name, "kavsetup", "/" 10 * keys "/" topics) / of(name, "kavsetup", "/" keys "/" topics)
      if (ratio > worst) worst = ratio
    }
  }
  return worst
}

function at_most(name, limit) { return of(name, "kavsetup", "") <= limit }

function key_rows(label, name, has_bar) {
  row(label ", ms", name, "", 2, has_bar ? "0.5" : "", has_bar ? at_most(name, 0.5) : "")
  row(label ", bytes", name " bytes", "", 0, has_bar ? "130" : "", has_bar ? at_most(name " bytes", 130) : "")
}

END {
  print "| | kavsetup | bare | inih | GKeyFile | SimpleIni | iniparser | dialog | bar | met |"
  print "|---|--:|--:|--:|--:|--:|--:|--:|---|---|"
  rows("Load and one lookup, us", "load", 1, "inih 1.5, GKeyFile 2")
  rows("Its peak memory, bytes", "memory", 0, "bare 1")
  rows("1,000 lookups, us", "lookups", 0, "500 us")
  rows("Load, 40 sets, durable write, us", "write", 0, "GKeyFile 1")
  rows("The same with the disk, us", "disk", 0, "")
  figure["growth/kavsetup"] = growth("write")
  row("Growth of it with ten times the keys, at most", "growth", "", 1, "12", figure["growth/kavsetup"] <= 12)
  row("Load a database of 500 models, us", "database", "", 0, "", "")
  row("Choose a model in it, us", "model", "", 0, "", "")
  row("Parse a list of 32 jobs, us", "parse", "", 1, "", "")
  row("Build it, us", "build", "", 1, "", "")
  row("Start to the first screen (500 models), ms", "start", "", 2, "1.3 of bare",
      of("start", "kavsetup", "") <= 1.3 * of("start", "bare", ""))
  key_rows("Down in a menu", "down", 1)
  key_rows("Down in the list of models", "list", 1)
  key_rows("Down in the list of events, over the whole width", "events", 0)
  key_rows("Down when the list of models scrolls", "scroll", 0)
  key_rows("A character typed into a mask", "type", 0)
  row("Escape, ms", "escape", "", 1, "30", at_most("escape", 30))
  row("Peak memory of a session, kB", "session", "", 0, "bare + 1,024",
      of("session", "kavsetup", "") <= of("session", "bare", "") + 1024)
}
