# Prints the tables from bounds.txt and the programs' measurements:
#   awk -v gate=no|yes -f table.awk BOUNDS FILE...
# With gate=yes, exits 1 if a ratio of instructions is more than 6 % above its bound. Files are
# recognised by name: instructions, growth, allocations, peers, server, sizes.
BEGIN { FS = "\t+"; tolerance = 1.06 }
FNR == 1 { kind = FILENAME; sub(/.*\//, "", kind) }
kind == "instructions" && /^# / { counter = substr($0, 3) }
/^#/ || NF < 2 { next }
kind == "bounds.txt" { bound[$1] = $2 }
kind == "instructions" { names[++count] = $1; ours[$1] = $2; least[$1] = $3 }
kind == "growth" { growth[$1] = sprintf("%.2f", $3 / $2) }
kind == "allocations" { allocations[$1] = $3 ? sprintf("%.2f", $2 / $3) : "-"; peak[$1] = $4 / 1024 }
kind == "peers" { peer[$1] = $2 }
kind == "server" { lines[++line_count] = sprintf("%-26s %8d%s", $1, $2, $3 ? sprintf("   %.2f of an empty C++ program", $2 / $3) : "") }
kind == "sizes" { lines[++line_count] = sprintf("%-26s %8s", $1, $2) }

function print_operation(name,    ratio) {
  ratio = ours[name] / least[name]
  printf "%-18s %12d %12d %7.3f %7s", name, ours[name], least[name], ratio, bound[name]
  if (full) printf " %9s", name in peer ? sprintf("%.2f", ours[name] / peer[name]) : "-"
  if (full) printf " %8s %8d %7s", allocations[name], peak[name], name in growth ? growth[name] : "-"
  if (bound[name] == "" || ratio > bound[name] * tolerance) {
    printf "  TOO HIGH"
    failed++
  }
  printf "\n"
}

END {
  full = length(peak) > 0
  printf "Instructions outside the kernel, counted by %s; floor: the fewest calls of the JSON library.\n", counter
  printf "%-18s %12s %12s %7s %7s", "operation", "ours", "floor", "ratio", "bound"
  if (full) printf " %9s %8s %8s %7s", "RapidJSON", "allocs", "peak KB", "at 4 x"
  printf "\n"
  for (i = 1; i <= count; i++) print_operation(names[i])
  if (full) {
    print "RapidJSON: ours, as a ratio to its tree doing what the floor does"
    print "allocs: allocations, as a ratio to the floor's; at 4 x: cost with a document 4 times as large"
    print "\nThe daemon as a process:"
    for (i = 1; i <= line_count; i++) print lines[i]
  }
  exit gate == "yes" && failed > 0
}
