# The table of a run, from lines NAME/PROGRAM/KEYS/TOPICS,VALUE: one row for each figure, with the goal that
# kavsetup wants to meet.
{ figure[$1] = $2 }

function of(name, program, rest) { return figure[name "/" program rest] }

# Figure and ratio of another program; "-" for what was not measured.
function beside(name, program, rest, digits,   other) {
  other = of(name, program, rest)
  return other == "" ? "-" : sprintf("%.*f (%.1f)", digits, other, other / of(name, "kavsetup", rest))
}

# `met`: 1, 0, or "" where there is no goal. What was not measured has no row.
function row(label, name, rest, digits, goal, met,   ours, bare) {
  ours = of(name, "kavsetup", rest)
  if (ours == "") return
  bare = of(name, "lines", rest) == "" ? "bare" : "lines"
  printf "| %s | %.*f | %s | %s | %s | %s | %s | %s | %s | %s | %s |\n", label, digits, ours,
         beside(name, "floor", rest, digits), beside(name, bare, rest, digits), beside(name, "inih", rest, digits),
         beside(name, "GKeyFile", rest, digits),
         beside(name, "SimpleIni", rest, digits), beside(name, "iniparser", rest, digits),
         beside(name, "dialog", rest, digits), goal, met == "" ? "" : met ? "yes" : "NO"
}

# What is asked of an operation on a file of so many keys: so many times faster than another one, or so many times the
# floor at most.
function floors(keys) { return keys == 100 ? 2 : 2.5 }
function faster(keys) { return keys == 100 ? 1.25 : 1 }
function goal_of(name, keys) {
  return name == "load"      ? "inih 1.5, GKeyFile 2, " floors(keys) " floors" \
         : name == "cold"    ? floors(keys) " floors" \
         : name == "memory"  ? "bare 1" \
         : name == "lookups" ? "300 us" \
         : name == "write"   ? "GKeyFile " faster(keys) : ""
}
function is_met(name, keys, rest,   ours) {
  ours = of(name, "kavsetup", rest)
  if ((name == "load" || name == "cold") && ours > floors(keys) * of(name, "floor", rest)) return 0
  return name == "load"      ? of(name, "inih", rest) >= 1.5 * ours && of(name, "GKeyFile", rest) >= 2 * ours \
         : name == "cold"    ? 1 \
         : name == "memory"  ? ours <= of(name, "lines", rest) \
         : name == "lookups" ? ours <= 300 \
         : name == "write"   ? ours * faster(keys) <= of(name, "GKeyFile", rest) : ""
}

# The rows of one operation on all files.
function rows(label, name, digits,   topics, keys, rest) {
  for (topics = 1; topics <= 100; topics *= 10) {
    for (keys = 100; keys <= 10000; keys *= 10) {
      rest = "/" keys "/" topics
      row(label ", " keys " keys, " topics (topics == 1 ? " topic" : " topics"), name, rest, digits,
          goal_of(name, keys), is_met(name, keys, rest))
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

function key_rows(label, name, has_goal) {
  row(label ", ms", name, "", 2, has_goal ? "0.5" : "", has_goal ? at_most(name, 0.5) : "")
  row(label ", bytes", name " bytes", "", 0, has_goal ? "130" : "", has_goal ? at_most(name " bytes", 130) : "")
}

# A start, which may take `most` times as long as bare curses.
function start_row(label, name, most) {
  row("Start to the first screen, " label ", ms", name, "", 2, most " of bare",
      of(name, "kavsetup", "") <= most * of(name, "bare", ""))
}

# From one screen to the next.
function change_rows(   names, count, i, name) {
  count = split("to the UPS mask|back from it|to the list of events|to the list of jobs|to a job mask|to its help|" \
                "back to the job mask|back to the list of jobs|back to the list of events|back to the session menu",
                names, "|")
  for (i = 1; i <= count; i++) {
    name = "change " names[i]
    row("Screen change " names[i] ", bytes", name, "", 0, "1.15 of bare",
        of(name, "kavsetup", "") <= 1.15 * of(name, "bare", ""))
  }
}

END {
  print "| | kavsetup | floor | bare | inih | GKeyFile | SimpleIni | iniparser | dialog | goal | met |"
  print "|---|--:|--:|--:|--:|--:|--:|--:|--:|---|---|"
  rows("Load and one lookup, warm, us", "load", 1)
  rows("Load and one lookup, cold, us", "cold", 1)
  rows("Its peak memory, bytes", "memory", 0)
  rows("1,000 lookups, us", "lookups", 0)
  rows("Load, 40 sets, durable write, us", "write", 0)
  rows("The same with the disk, us", "disk", 0)
  figure["growth/kavsetup"] = growth("load")
  row("Growth of a load with ten times the keys, at most", "growth", "", 1, "12", figure["growth/kavsetup"] <= 12)
  row("Load a database of 500 models, us", "database", "", 0, "", "")
  row("Choose a model in it, us", "model", "", 0, "", "")
  row("Parse a list of 32 jobs, us", "parse", "", 1, "", "")
  row("Build it, us", "build", "", 1, "", "")
  start_row("without ups.cfg, 500 models", "start", 1.3)
  start_row("with ups.cfg, 40 models", "start 40", 1.05)
  start_row("with ups.cfg, 500 models", "start 500", 1.15)
  key_rows("Down in a menu", "down", 1)
  key_rows("Down in the list of models", "list", 1)
  key_rows("Down in the list of events, over the whole width", "events", 0)
  key_rows("Down when the list of models scrolls", "scroll", 0)
  key_rows("A character typed into a mask", "type", 0)
  change_rows()
  row("Escape, ms", "escape", "", 1, "30", at_most("escape", 30))
  row("Peak memory of a session, kB", "session", "", 0, "bare + 1,024",
      of("session", "kavsetup", "") <= of("session", "bare", "") + 1024)
}
