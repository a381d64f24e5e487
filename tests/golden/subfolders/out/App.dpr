unit App;
var Q: TKVAQuery;
end.
