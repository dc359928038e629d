# Shared by fuzz/run and fuzz/campaign (sourced, from the source tree's top):
# the targets, their options, the build of the fuzzers and each target's
# starting corpus.

fuzz_targets=(sql_tokens ddl_parse ddl_import ddl_roundtrip model_open model_read api_calls)
# Targets that run thousands of inputs a second: a campaign gives them the
# cores first (the others run at the lowest priority until these stop).
fuzz_fast_targets=(sql_tokens ddl_parse)

# AddressSanitizer keeps freed memory from reuse for a while to catch late
# uses; 8 MiB of it (rather than 256) still catches a use soon after a free
# and makes the builder targets about half again as fast.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:quarantine_size_mb=8

fuzz_build() {
  CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVRN_FUZZ=ON -DVRN_WERROR=ON \
    -DVRN_BUILD_TESTS=OFF -DVRN_BUILD_EXAMPLES=OFF -DVRN_BUILD_BENCH=OFF > /dev/null
  cmake --build build-fuzz -j"$(nproc 2>/dev/null || echo 2)" > /dev/null
  build-fuzz/fuzz/make_dictionary > build-fuzz/sql.dict
}

# The options of one target: SQL targets mutate statement-sized inputs with
# the dialects' words (the parser a statement or two, at four times the speed
# of script pages); model file targets need room for a whole file.
fuzz_options() {
  case $1 in
    sql_tokens | ddl_parse) echo "-max_len=1024 -dict=build-fuzz/sql.dict" ;;
    ddl_import) echo "-max_len=4096 -dict=build-fuzz/sql.dict" ;;
    model_open | model_read) echo "-max_len=262144" ;;
    *) echo "-max_len=1024" ;;
  esac
}

# fuzz_seed TARGET DIR: the target's committed corpus and fresh seeds in DIR.
# Sample scripts are cut into pieces of a few statements, the size the SQL
# targets mutate; model file targets get a model of the example schema.
fuzz_seed() {
  local target=$1 dir=$2 file
  mkdir -p "$dir"
  if [ -d "fuzz/corpus/$target" ]; then cp fuzz/corpus/"$target"/* "$dir"/ 2> /dev/null || true; fi
  case $target in
    sql_tokens | ddl_parse | ddl_import)
      for file in examples/example_schema.sql fuzz/seed_changes.sql $(find tests/data -maxdepth 1 -type f ! -name '*.md'); do
        split -C 4000 -d -a 4 "$file" "$dir/seed-$(basename "$file")."
      done ;;
    model_open | model_read)
      build-fuzz/tools/vrnmodel/vrnmodel import examples/example_schema.sql -o "$dir/seed-example.vrn" > /dev/null ;;
    *)
      local i
      for i in 1 2 3 4 5 6 7 8; do head -c 256 /dev/urandom > "$dir/seed-random$i"; done ;;
  esac
}

# fuzz_start TARGET CORPUS SECONDS LOG [OPTION...]: runs the target for at
# most SECONDS, failing inputs kept as build-fuzz/artifacts/TARGET-*.
fuzz_start() {
  local target=$1 corpus=$2 seconds=$3 log=$4
  shift 4
  mkdir -p build-fuzz/artifacts
  # shellcheck disable=SC2046
  build-fuzz/fuzz/fuzz_"$target" "$corpus" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
    -artifact_prefix=build-fuzz/artifacts/"$target"- -print_final_stats=1 $(fuzz_options "$target") "$@" > "$log" 2>&1
}

# fuzz_summary LOG: "executions coverage peak-MiB" from a fuzzer's log.
fuzz_summary() {
  local execs cov rss
  execs=$(grep -aoE '^#[0-9]+' "$1" | tail -1 | tr -d '#')
  cov=$(grep -aoE 'cov: [0-9]+' "$1" | tail -1 | cut -d' ' -f2)
  rss=$(grep -aoE 'rss: [0-9]+Mb' "$1" | tail -1 | grep -oE '[0-9]+')
  echo "${execs:-0} ${cov:-0} ${rss:-0}"
}
