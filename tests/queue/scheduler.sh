# shellcheck shell=sh
# A print scheduler of its own, for tests: below one directory, on a UNIX socket, without network. To be sourced by sh.
# Only root can run it: filters run as user lp.
#
#   start_scheduler DIR [FILTER...]   DIR: a new directory of mktemp; FILTERs are installed beside those of the system
#   stop_scheduler                    in the trap of the test as well; the scheduler ends with what it has started
#   job_log JOB                       its lines of the log; JOB is what lp calls it, such as q-1
#   wait_for_job JOB SECONDS TEXT     until one of them has TEXT: "Job completed", "Job stopped", "Canceled by", ...
#
# Afterwards CUPS_SERVER is set, so lp, lpadmin and others talk to it; its log is DIR/error_log, its spool DIR/spool,
# temporary files of filters are in DIR/tmp. Queues print into files (lpadmin -v file:DIR/...), a job into the place of
# the one before it.

start_scheduler() {
  scheduler_dir=$1
  shift
  [ "$(id -u)" -eq 0 ] || { echo "a scheduler needs root" && exit 1; }
  chmod 755 "$scheduler_dir"
  (
    umask 022
    cd "$scheduler_dir" || exit
    mkdir etc spool cache state lib lib/filter tmp
    chgrp lp spool cache state tmp
    chmod 710 spool
    chmod 770 cache
    chmod 1770 tmp
    # Filters must belong to root and lie where lp may look.
    system=$(cups-config --serverbin)
    for folder in "$system"/*; do [ "$folder" = "$system/filter" ] || ln -s "$folder" lib/; done
    ln -s "$system"/filter/* lib/filter/
    for added in "$@"; do install -m 755 "$added" lib/filter/; done
    cat >etc/cups-files.conf <<END
ServerRoot $scheduler_dir/etc
RequestRoot $scheduler_dir/spool
CacheDir $scheduler_dir/cache
StateDir $scheduler_dir/state
TempDir $scheduler_dir/tmp
ServerBin $scheduler_dir/lib
ErrorLog $scheduler_dir/error_log
AccessLog $scheduler_dir/access_log
PageLog $scheduler_dir/page_log
LogFilePerm 0644
FileDevice Yes
Printcap
SystemGroup root
User lp
Group lp
END
    cat >etc/cupsd.conf <<END
Listen $scheduler_dir/cups.sock
LogLevel debug
MaxLogSize 0
Browsing Off
WebInterface No
DefaultAuthType None
DefaultShared No
PreserveJobFiles No
JobKillDelay 5
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
END
  )
  CUPS_SERVER=$scheduler_dir/cups.sock
  export CUPS_SERVER
  /usr/sbin/cupsd -f -c "$scheduler_dir/etc/cupsd.conf" -s "$scheduler_dir/etc/cups-files.conf" &
  scheduler=$!
  for _ in $(seq 100); do
    lpstat -r 2>/dev/null | grep -q 'is running' && return
    kill -0 "$scheduler" 2>/dev/null || break
    sleep 0.1
  done
  echo "the scheduler does not start:"
  cat "$scheduler_dir/error_log"
  exit 1
}

stop_scheduler() {
  [ -n "${scheduler:-}" ] || return 0
  kill "$scheduler" 2>/dev/null || true
  wait "$scheduler" 2>/dev/null || true
  scheduler=
}

job_log() { # JOB
  grep -F "[Job ${1##*-}] " "$scheduler_dir/error_log"
}

wait_for_job() { # JOB SECONDS TEXT
  for _ in $(seq "${2}0"); do
    if job_log "$1" | grep -q -e "$3"; then return 0; fi
    sleep 0.1
  done
  echo "$1: the log does not say \"$3\" within $2 s:"
  job_log "$1" | grep -v ' [ae][rn][gv][vp]'
  return 1
}
