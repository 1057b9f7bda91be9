# For the tests of the pages, which source it: they run every command of a page, from a folder that looks like the
# repository, and compare what comes out with frames of the tool.
# shellcheck shell=bash

# enter_copy SOURCE_FOLDER BUILD_FOLDER: makes a scratch folder the current one. Everything of the repository is seen in
# it by links, but out/, which is new, and build/, which holds the build alone.
enter_copy() {
    local source=$1 build=$2 entry
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    for entry in "$source"/*; do
        case ${entry##*/} in out | build) ;; *) ln -s "$entry" "$scratch/" ;; esac
    done
    mkdir "$scratch/out" "$scratch/build"
    ln -s "$build" "$scratch/build/release"
    cd "$scratch" || exit
}

# run_page PAGE: runs the blocks of a page that are marked as shell commands, in order, in one shell. The first that fails
# ends it, and all that was said is shown.
run_page() {
    local commands
    commands=$(awk '/^```sh$/ { on = 1; next } /^```/ { on = 0 } on' "$1")
    [[ -n $commands ]] || { echo "$1 has no commands"; return 1; }
    bash -euvo pipefail -c "$commands" > out/log 2>&1 || { cat out/log; echo "$1: a command failed"; return 1; }
}

# tool_frames FILE ARGUMENT...: what `captionfx render` draws, as raw frames.
tool_frames() {
    build/release/bin/captionfx render "${@:2}" --format bgra --quiet -o - > "$1"
}

# expect_equal WHAT FILE FILE
expect_equal() {
    [[ -s $2 ]] || { echo "$1: $2 is missing or empty"; exit 1; }
    cmp "$2" "$3" || { echo "$1: the frames differ"; exit 1; }
}

# likeness VIDEO RAW FRAME: how near a video comes to raw frames, dB; 100 where they are equal.
likeness() {
    ffmpeg -nostdin -i "$1" -f rawvideo -pix_fmt bgra -video_size "$3" -i "$2" \
        -lavfi '[0]format=bgra,settb=1/25,setpts=N[video];[1]settb=1/25,setpts=N[frames];[video][frames]psnr' -f null - 2>&1 |
        sed -n 's/.*PSNR.* average:\([0-9]*\|inf\).*/\1/p' | sed 's/inf/100/'
}

# expect_title_on FILM TITLED TITLE FRAME: an encoded film shows the title as the tool puts it on the film: not to the
# byte, since encoders lose, but nearer than the film without it. Encoded without a title it would be farther.
expect_title_on() {
    local with without
    tool_frames out/wanted.frames "$3" --over "$1"
    with=$(likeness "$2" out/wanted.frames "$4")
    without=$(likeness "$1" out/wanted.frames "$4")
    ((with > without)) || { echo "$2 does not show $3 on $1: $with dB, without it $without dB"; exit 1; }
}

# expect_failure CODE TEXT COMMAND...: the command fails with that code, and says TEXT in one of its lines.
expect_failure() {
    local wanted=$1 text=$2 status=0 said
    shift 2
    said=$("$@" 2>&1 > /dev/null < /dev/null) || status=$?
    [[ $status == "$wanted" ]] || { echo "$*: exit code $status, wanted $wanted: $said"; exit 1; }
    grep --quiet --fixed-strings -- "$text" <<< "$said" || { echo "$*: wanted '$text', got: $said"; exit 1; }
}
