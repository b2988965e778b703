# Prints the table from bounds.txt and the measured costs; exits 1 when gate=yes and a ratio is too
# high. Both files: NAME, two tabs or more between the fields.
BEGIN { FS = "\t+"; tolerance = 1.06 }
/^#/ || NF < 2 { next }
FNR == NR { bound[$1] = $2; next }
{
  if (!heading++) printf "%-20s %14s %14s %8s %8s\n", "operation", "instructions", "floor", "ratio", "bound"
  ratio = $2 / $3
  late = bound[$1] != "" && ratio > bound[$1] * tolerance
  printf "%-20s %14d %14d %8.3f %8s%s\n", $1, $2, $3, ratio, bound[$1], late ? "  TOO HIGH" : ""
  failed += late
}
END { exit gate == "yes" && failed > 0 }
