# Reads a list of names, a policy expanded by tools/check-policy, and files that assign labels; prints
# the faults of policy and labels.

function fault(text) { print "check-policy: " where ": " text }

function unlisted(kind, name) {
  fault("policy-names.txt lists no " kind " " name "; add it there if the public policy of" \
        " Android 14 (system/sepolicy/public) has it")
}

function check_type(name) { if (!(name in own || name in types)) unlisted("type", name) }

function check_attribute(name) { if (!(name in attributes)) unlisted("attribute", name) }

function check_permission(class, name) {
  if (!((class, name) in permissions)) unlisted("permission of " class, name)
}

# Reads a name, or the names between braces, from word[position] on into `set`; returns their number.
function take_names(set,    count) {
  if (word[position] != "{") { set[1] = word[position++]; return 1 }
  for (++position; position <= words && word[position] != "}"; ++position)
    set[++count] = word[position]
  ++position
  return count
}

# allow SOURCES TARGETS : CLASSES PERMISSIONS
function check_rule(    source, target, class, permission, i, j, sources, targets, classes, count) {
  position = 2
  sources = take_names(source)
  targets = take_names(target)
  if (word[position++] != ":") return 0
  classes = take_names(class)
  count = take_names(permission)
  for (i = 1; i <= sources; ++i) check_type(source[i])
  for (i = 1; i <= targets; ++i) check_type(target[i])
  for (i = 1; i <= classes; ++i)
    for (j = 1; j <= count; ++j) check_permission(class[i], permission[j])
  return sources && targets && classes && count && position == words + 1
}

# From word[first] on: ATTRIBUTE [, ATTRIBUTE]...
function check_attributes(first,    i) {
  for (i = first; i <= words; i += 2) {
    if (i > first && word[i - 1] != ",") return 0
    check_attribute(word[i])
    has_attribute[word[2], word[i]]
  }
  return i == words + 2
}

# macro_NAME COUNT ARGUMENT...
function check_macro(name,    i) {
  if (word[2] != arguments[name])
    fault(name " takes another number of arguments: " arguments[name])
  for (i = 3; i <= words; ++i) check_type(word[i])
  return 1
}

function is_statement() {
  if (word[1] == "type") return words == 2 || word[3] == "," && check_attributes(4)
  if (word[1] == "allow" || word[1] == "dontaudit") return check_rule()
  if (sub(/^macro_/, "", word[1])) return check_macro(word[1])
  if (word[1] != "typeattribute") return 0
  check_type(word[2])
  return check_attributes(3)
}

# Rules may name types that are declared after them, so all statements are read first.
function check_statements(    i) {
  for (i = 1; i <= statements; ++i) {
    where = place[i]
    words = split(statement[i], word, " ")
    if (!is_statement())
      fault("no statement that this check knows, or an unlisted macro: " statement[i])
  }
}

function end_statement() {
  words = split(text, word, " ")
  if (!words) return
  if (word[1] == "type") own[word[2]]
  if (word[1] in declares) own[word[3]]
  statement[++statements] = text
  text = ""
}

FNR == 1 { ++file }

file == 1 {
  if ($1 == "macro") arguments[$2] = $3
  if ($1 == "macro" && $4 == "declares") declares["macro_" $2]
  if ($1 == "attribute") attributes[$2]
  if ($1 == "type") types[$2]
  if ($1 == "class") for (i = 3; i <= NF; ++i) permissions[$2, $i]
  if ($1 == "label") label_attribute[$2] = $3
  next
}

# m4 reports the origin of the next line, with the file name if that has changed.
file == 2 && /^#line / {
  line = $2 - 1
  if ($3) policy_file = $3
  gsub(/"/, "", policy_file)
  next
}

file == 2 {
  where = policy_file ":" ++line
  sub(/#.*/, "")
  if (/[`\047]/) {
    fault("a quote is left over: no apostrophe may stand inside the quotes of a macro")
    exit
  }
  gsub(/[{}:,;()]/, " & ")
  for (i = 1; i <= NF; ++i) {
    if ($i == ";") { end_statement(); continue }
    if (text == "") place[statements + 1] = where
    text = text (text == "" ? "" : " ") $i
    # Parentheses remain only after names that m4 did not recognise as macros.
    if ($i == ")") end_statement()
  }
  next
}

FNR == 1 && file == 3 { end_statement(); check_statements() }

/^#/ || !NF { next }

{
  where = FILENAME ":" FNR
  type = $2
  if (!sub(/^u:object_r:/, "", type) || !sub(/:s0$/, "", type)) fault("no label: " $2)
  else if (!(type in own)) fault("no type of ours: " type)
}

FILENAME ~ /file_contexts$/ {
  known_place = 0
  for (path in label_attribute) {
    if (index($1, path) != 1) continue
    known_place = 1
    if (!((type, label_attribute[path]) in has_attribute))
      fault("a type for files below " path " needs the attribute " label_attribute[path] ": " type)
  }
  if (!known_place) fault("the platform lets no vendor label files there: " $1)
}
