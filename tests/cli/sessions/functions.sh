# changed FROM TO: builds a survey of two questions from definition.json with FROM changed to TO.
changed() {
    text=$(< "$SOURCE/tests/cli/sessions/definition.json")
    printf %s "${text/"$1"/"$2"}" > changed.json
    quibra-cli build changed.json changed.qb
}

# option JSON: totals the survey of fruits with the options in JSON.
option() {
    printf %s "$1" > option.json
    quibra-cli total fruit.qb --option option.json
}

# repeat COUNT TEXT
repeat() {
    printf "%.0s$2" $(seq "$1")
}

# listed OPTION...: the answers in the list of texts of fruits' question 3, as ID:choice.
listed() {
    quibra-cli essays fruit.qb 3 "$@" --format=json |
        sed -n 's/.*"\(IDno\|Cno\)": *\([0-9]*\).*/\2/p' | paste -d : - - | paste -sd ' '
}

# search NAME OPTION...: the texts of the sample survey, compared with what a plain search of that name finds.
search() {
    quibra-cli essays residents.qb "${@:2}" | sed '1,3d;$d' | cut -f 1,3 |
        cmp - <(quibra-cli dump residents.qb | PYTHONUTF8=1 "$PYTHON" "$SOURCE/tests/cli/sessions/search.py" "$1")
}

# edited FILE [OUT] COMMAND...: what each command of the question editor brings up and leaves, without the words of state
# that a line before has had.
edited() {
    files=("$1")
    shift
    [[ $1 == \{* ]] || { files+=("$1"); shift; }
    printf '%s\n' "$@" | quibra-cli edit "${files[@]}" | "$PYTHON" -c '
import json, sys
before = {}
for line in sys.stdin:
    state = json.loads(line)
    print(json.dumps({k: v for k, v in state.items() if v != before.get(k) or k == "Error"}, ensure_ascii=False))
    before = state'
    return "${PIPESTATUS[1]}"
}
