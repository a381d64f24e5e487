unit z;
var Q: TKVAQuery;
end.
