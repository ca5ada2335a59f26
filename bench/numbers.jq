# A number with $n decimals.
def fixed($n):
  (. * pow(10; $n) | round) as $all
  | if $n == 0 then $all | tostring
    else ($all / pow(10; $n) | floor | tostring) + "." + ($all % pow(10; $n) + pow(10; $n) | tostring | .[1:]) end;
