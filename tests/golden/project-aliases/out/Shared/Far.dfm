inherited FarForm: TFarForm
    object DbF: TKVAConnection
  end
  object QF: TKVAQuery
    Connection = DbF.DbF
    AutoCommit = True
  end
end
