# Small functions shared by the rig and by the commands at the top. Source it after `set -eu`.
# shellcheck shell=bash

root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")

# What runs without a stdin (or with a closed one) gets an empty one.
{ : <&0; } 2>/dev/null || exec </dev/null

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
fail() {
    say "$*"
    exit 1
}

# The wall clock in microseconds.
microseconds() { printf '%s' "${EPOCHREALTIME/[^0-9]/}"; }

# waitUntil SECONDS COMMAND...: true as soon as COMMAND is, false when it is not in time.
waitUntil() {
    local end=$(($(microseconds) + $1 * 1000000))
    shift
    until "$@"; do
        (($(microseconds) < end)) || return 1
        sleep 0.02
    done
}

# isGone PROCESS: has it ended?
isGone() { ! kill -0 "$1" 2>/dev/null; }

# cleanUpWith FUNCTION: runs it when this script ends, however it ends short of SIGKILL.
cleanUpWith() {
    # shellcheck disable=SC2064 # the name is to be expanded now
    trap "trap '' INT TERM HUP; $1" EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
}

# runAttended COMMAND...: runs it with our stdin and gives its exit code. A signal to us ends it, and then us.
runAttended() {
    local child code=0 signal=''
    "$@" <&0 &
    child=$!
    trap 'signal=130; kill -TERM "$child" 2>/dev/null || true' INT
    trap 'signal=143; kill -TERM "$child" 2>/dev/null || true' TERM HUP
    while
        wait "$child" && code=0 || code=$?
        [ -n "$signal" ] && kill -0 "$child" 2>/dev/null
    do :; done
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    [ -z "$signal" ] || exit "$signal"
    return "$code"
}

# startDaemon LOG COMMAND...: starts it in the background; it never outlives this script.
startDaemon() {
    local log=$1
    shift
    setpriv --pdeathsig TERM "$@" >>"$log" 2>&1 </dev/null &
}

# processesWith NAME=VALUE: the ids of the processes that were started with it in their environment.
# Give each run a value of its own, and export it before anything is started.
processesWith() {
    local file
    env -u "${1%%=*}" grep -lszxF -- "$1" /proc/[0-9]*/environ | while read -r file; do
        file=${file#/proc/}
        echo "${file%/environ}"
    done
}

noProcessWith() { [ -z "$(processesWith "$1")" ]; }

# endProcessesWith NAME=VALUE: asks them to end, insists after 5 s, and returns when none is left.
endProcessesWith() {
    local signal process
    for signal in TERM KILL; do
        for process in $(processesWith "$1"); do
            kill "-$signal" "$process" 2>/dev/null || true
        done
        waitUntil 5 noProcessWith "$1" && return 0 # explicit: in a trap, a bare return gives the status before it
    done
    say "these processes do not end: $(processesWith "$1" | tr '\n' ' ')"
}

# systemNameIsOwned NAME: is it on the bus that DBUS_SYSTEM_BUS_ADDRESS names?
systemNameIsOwned() {
    [ "$(busctl call org.freedesktop.DBus / org.freedesktop.DBus NameHasOwner s "$1" 2>/dev/null)" = 'b true' ]
}

# readPackages LIST...: the names in packaging/linux/packages/LIST.txt, one a line.
readPackages() {
    local list
    for list; do
        sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$root/packaging/linux/packages/$list.txt"
    done
}

# ensurePackages LIST...: installs what is missing of the lists. Needs nothing, and is quick, when all is there.
ensurePackages() {
    local wanted present missing sudo=() log=$root/build/install.log
    mapfile -t wanted < <(readPackages "$@")
    if ! command -v dpkg-query >/dev/null; then
        say "this is no Debian system: cannot see whether ${wanted[*]} are installed; going on"
        return 0
    fi
    # dpkg-query fails when it does not know one of the names, which is what is asked here.
    present=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
    mapfile -t missing < <(printf 'installed %s\n' "${wanted[@]}" | grep -vxFf <(printf '%s\n' "$present") | cut -d' ' -f2)
    [ ${#missing[@]} -gt 0 ] || return 0
    say "installing ${missing[*]}"
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || fail "neither root nor sudo: please install ${missing[*]}"
        sudo=(sudo)
    fi
    mkdir -p "$root/build"
    {
        "${sudo[@]}" apt-get update &&
            "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
    } >"$log" 2>&1 || {
        tail -n 30 "$log" >&2
        fail "installing failed, see $log"
    }
}

# buildPreset PRESET "CONFIGURE OPTIONS" TARGET...: configures where that is still to be done with these options,
# and builds; all when no target is named. Quiet; false, with the end of the log on stderr, when it fails.
buildPreset() {
    local preset=$1 options=$2 log=$root/build/$1.log option isConfigured=1
    shift 2
    [ -f "$root/build/$preset/build.ninja" ] || isConfigured=0
    for option in $options; do
        option=${option#-D}
        grep -qsx "${option%%=*}:[A-Z]*=${option#*=}" "$root/build/$preset/CMakeCache.txt" || isConfigured=0
    done
    mkdir -p "$root/build"
    (
        cd "$root"
        # shellcheck disable=SC2086 # several options
        { [ $isConfigured = 1 ] || cmake --preset "$preset" $options; } &&
            cmake --build --preset "$preset" ${1:+--target "$@"}
    ) >"$log" 2>&1 || {
        tail -n 60 "$log" >&2
        say "building $preset failed, see $log"
        return 1
    }
}

# busAnswers ADDRESS: the file of a bus is there a moment before the bus listens.
busAnswers() { busctl --address="$1" list >/dev/null 2>&1; }

# describeSleepStates DIRECTORY: in its sys/power, as the kernel does for a computer that can sleep.
describeSleepStates() {
    mkdir -p "$1/sys/power"
    echo 'freeze mem disk' >"$1/sys/power/state"
    echo '[s2idle] deep' >"$1/sys/power/mem_sleep"
    echo '[platform] shutdown' >"$1/sys/power/disk"
}

# describeLidSwitch DIRECTORY UDEV-DIRECTORY: in the one's sys as the kernel does, in the other as the device manager.
# The login manager finds its node, DIRECTORY/lid/switch, with LidSwitch.c.
describeLidSwitch() {
    local device=/sys/devices/platform/PNP0C0D:00/input/input0/event0
    mkdir -p "$1"{"$device",/lid,/sys/class/input,/sys/dev/char} "$2"/{data,tags/power-switch}
    printf 'MAJOR=13\nMINOR=64\nDEVNAME=input/event0\n' >"$1$device/uevent"
    ln -s /sys/class/input "$1$device/subsystem"
    ln -s "$device" "$1/sys/class/input/event0"
    ln -s "$device" "$1/sys/dev/char/13:64"
    printf 'I:1\nE:ID_INPUT=1\nE:ID_INPUT_SWITCH=1\nG:power-switch\nQ:power-switch\nV:1\n' >"$2/data/c13:64"
    : >"$2/tags/power-switch/c13:64"
    mkfifo "$1/lid/switch"
}
