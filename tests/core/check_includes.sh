#!/bin/bash
# Nothing includes upward: each folder may include only the folders below it.
# Usage: check_includes.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"
declare -A below=(
  [base]="base"
  [frame]="base frame pixel vorel"
  [entropy]="base frame entropy"
  [pixel]="base pixel vorel"
  [codec]="base frame entropy pixel codec codec422"
  [codec422]="base frame entropy pixel codec422"
  [component]="base component vorel"
  [container]="base container"
  [picture_io]="base picture_io vorel"
  [tool]="base frame component container picture_io tool vorel"
)
bad=0
files=0
for folder in "${!below[@]}"; do
  while IFS=: read -r file line; do
    target=$(sed -E 's/.*#include "([^/"]+)\/.*/\1/' <<< "$line")
    files=$((files + 1))
    case " ${below[$folder]} " in
      *" $target "*) ;;
      *) echo "$file includes upward: $line"; bad=1 ;;
    esac
  done < <(grep -rHE '^#include "[^"]*/' "$folder" --include='*.h' --include='*.cpp')
done
# Below the row loops only these headers of frame/ are known.
if grep -rnE '#include "frame/(catalogue|dispatch|frame_header|frame_tags|tag_rules)' entropy codec codec422 pixel; then
  echo "a codec must not know the dispatch"
  bad=1
fi
[ "$files" -gt 50 ] || { echo "only $files includes found"; exit 1; }
exit $bad
