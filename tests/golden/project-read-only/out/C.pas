unit C;
var Q: TKVAQuery;
end.
