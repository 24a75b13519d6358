#!/bin/sh
# One run of the model, in the directory of a worker: base.db and changes.sql become run.inp, and the engine reads that.
set -eu
rm -f observed.txt # of the run before: a run that fails must not find it
velm export "${BASE:-base.db}" run.inp --sql changes.sql --quiet
"${ENGINE:-engine}" run.inp > observed.tmp
mv observed.tmp observed.txt
