# shellcheck shell=sh
# Printer applications of their own, for tests: each below one directory, on a free port of the loopback. To be sourced
# by sh.
#
#   start_printer_app DIR PROGRAM [-o OPTION=VALUE...]   DIR: a directory, new or of an application that has ended
#   stop_printer_app DIR                 in the trap of the test as well, for every application; true where there is none
#   printer_app DIR COMMAND...           a command of the program, such as: add -d NAME -m vrk -v file:///DIRECTORY
#   printer_uri DIR NAME                 ipp://...
#   print_job DIR NAME FILE TYPE [ATTRIBUTE...]   sends a file as this MIME type with job attributes of ipptool ("keyword
#                                        vrk-filter burkes"), waits for the job, and prints its state and what is said
#                                        about it: "completed Job completed.", or why it is refused: "refused
#                                        client-error-document-format-error (...)"
#
# The process is in DIR/pid, the port in DIR/port, the log in DIR/log, jobs and printers in DIR/state.

printer_app() { # DIR COMMAND...: PAPPL keeps the socket of its commands there
  printer_app_dir=$(realpath "$1")
  shift
  SNAP_COMMON=$printer_app_dir TMPDIR=$printer_app_dir "$(cat "$printer_app_dir/program")" "$@" </dev/null
}

start_printer_app() {
  mkdir -p "$1"
  printer_app_dir=$(realpath "$1")
  realpath "$2" >"$printer_app_dir/program"
  shift 2
  : >"$printer_app_dir/said"
  SNAP_COMMON=$printer_app_dir TMPDIR=$printer_app_dir "$(cat "$printer_app_dir/program")" server \
    -o spool-directory="$printer_app_dir/state" -o log-file="$printer_app_dir/log" "$@" \
    </dev/null >"$printer_app_dir/said" 2>&1 &
  echo $! >"$printer_app_dir/pid"
  for _ in $(seq 100); do
    sed -n 's|^Listening on http://.*:\([0-9]*\)/$|\1|p' "$printer_app_dir/said" >"$printer_app_dir/port"
    if [ -s "$printer_app_dir/port" ] && printer_app "$printer_app_dir" status >/dev/null 2>&1; then return 0; fi
    kill -0 "$(cat "$printer_app_dir/pid")" 2>/dev/null || break
    sleep 0.1
  done
  echo "the printer application does not start:"
  cat "$printer_app_dir/said"
  return 1
}

stop_printer_app() {
  [ -s "$1/pid" ] || return 0
  kill "$(cat "$1/pid")" 2>/dev/null || true
  wait "$(cat "$1/pid")" 2>/dev/null || true
  rm -f "$1/pid"
}

printer_uri() { echo "ipp://localhost:$(cat "$1/port")/ipp/print/$2"; }

print_job() {
  print_job_dir=$1 print_job_uri=$(printer_uri "$1" "$2") print_job_file=$3 print_job_type=$4
  shift 4
  {
    cat <<END
{
  NAME "print"
  OPERATION Print-Job
  GROUP operation-attributes-tag
  ATTR charset attributes-charset utf-8
  ATTR language attributes-natural-language en
  ATTR uri printer-uri \$uri
  ATTR name requesting-user-name tester
  ATTR name job-name "$(basename "$print_job_file")"
  ATTR mimeMediaType document-format $print_job_type
  GROUP job-attributes-tag
END
    for attribute in "$@"; do echo "  ATTR $attribute"; done
    cat <<END
  FILE $print_job_file
  EXPECT job-id DEFINE-VALUE JOB
}
{
  NAME "wait"
  SKIP-IF-NOT-DEFINED JOB
  DELAY 0.1
  OPERATION Get-Job-Attributes
  GROUP operation-attributes-tag
  ATTR charset attributes-charset utf-8
  ATTR language attributes-natural-language en
  ATTR uri printer-uri \$uri
  ATTR integer job-id \$JOB
  ATTR name requesting-user-name tester
  EXPECT job-state WITH-VALUE ">6" REPEAT-NO-MATCH REPEAT-LIMIT 600
  DISPLAY job-state
  DISPLAY job-state-message
}
END
  } >"$print_job_dir/job.test"
  ipptool -tv "$print_job_uri" "$print_job_dir/job.test" >"$print_job_dir/job.said" 2>&1 || true
  sed -n 's/^ *status-code = //p' "$print_job_dir/job.said" | head -1 >"$print_job_dir/job.status"
  case $(cat "$print_job_dir/job.status") in
    successful*) ;;
    *) echo "refused $(cat "$print_job_dir/job.status")" && return ;;
  esac
  sed -n 's/^ *job-state (enum) = //p' "$print_job_dir/job.said" | tail -1 | tr '\n' ' '
  sed -n 's/^ *job-state-message (text[A-Za-z]*) = //p' "$print_job_dir/job.said" | tail -1
}
